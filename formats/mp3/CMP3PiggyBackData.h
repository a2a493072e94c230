#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/P.h"

namespace fenn {
class IOutStream;
class ISeekableInStream;
}  // namespace fenn

namespace tbx {

// The bytes of an MP3 file around its audio: the head before the first frame
// (usually an ID3v2 tag) and the tail behind the last (an ID3v1 tag, other
// trailers). A source publishes it under "tbx.mp3.piggyBackData" and an MP3
// sink writes the same bytes around its new audio, so that a file's tags
// survive a conversion bit for bit.
class IMP3PiggyBackData : public virtual fenn::IBase
{
public:
    virtual std::int32_t getHeadSize() const = 0;
    virtual const std::uint8_t* getHeadData() const = 0;
    virtual std::int32_t getTailSize() const = 0;
    virtual const std::uint8_t* getTailData() const = 0;
    virtual void writeHead(fenn::IOutStream& stream) const = 0;
    virtual void writeTail(fenn::IOutStream& stream) const = 0;
};

// The value list key under which the head and tail travel.
inline constexpr const char* kMP3PiggyBackDataKey = "tbx.mp3.piggyBackData";

// Head and tail held in memory. Immutable once made, so any thread may read it.
class CMP3PiggyBackData : public fenn::CObject, public virtual IMP3PiggyBackData
{
public:
    CMP3PiggyBackData() = default;
    CMP3PiggyBackData(std::vector<std::uint8_t> head, std::vector<std::uint8_t> tail);

    // Runs a frame finder over the whole stream: the bytes before the first
    // frame are the head, those behind the last frame the tail. A stream in
    // which the finder finds no frames gives two empty blocks. An ID3v2 tag
    // at the start is passed over by its size before the search, so that a
    // tag larger than the finder's 64 KiB (cover pictures) still ends up in
    // the head. Leaves the stream at its start.
    static fenn::P<CMP3PiggyBackData> collect(fenn::ISeekableInStream& stream);

    std::int32_t getHeadSize() const override { return static_cast<std::int32_t>(m_head.size()); }
    const std::uint8_t* getHeadData() const override { return m_head.data(); }
    std::int32_t getTailSize() const override { return static_cast<std::int32_t>(m_tail.size()); }
    const std::uint8_t* getTailData() const override { return m_tail.data(); }
    void writeHead(fenn::IOutStream& stream) const override;
    void writeTail(fenn::IOutStream& stream) const override;

private:
    std::vector<std::uint8_t> m_head;
    std::vector<std::uint8_t> m_tail;
};

}  // namespace tbx

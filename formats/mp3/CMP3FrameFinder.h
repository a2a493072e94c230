#pragma once

#include <array>
#include <cstdint>

#include "formats/mp3/CMP3FrameHeader.h"
#include "foundation/CObject.h"

namespace fenn {
class IInStream;
}

namespace tbx {

// Finds the frames of an MPEG audio stream in bytes that the caller feeds
// with fill. Before the lock it gathers up to 64 KiB and looks for a chain of
// frames that follow each other exactly, all with the same version, layer,
// sample rate and channel count (and channel mode, unless that may vary);
// the first frame of the first such chain is the lock. From then on it
// resynchronises on every frame header and passes over headers that differ
// from the lock, which is how a frame with another mode is skipped as if it
// were not there. A finder that gathered 64 KiB without a lock is lost.
//
// Use: call findFrame; when it gives false, stop if isLost, else fill and
// try again (fill gives 0 at the stream's end). Positions are counted from
// where the stream stood at the first fill. All work happens in fixed
// buffers; a frame is copied once. One object per pass over a stream; one
// thread at a time.
class CMP3FrameFinder : public fenn::CObject
{
public:
    static constexpr std::int32_t kFrameBufferSize = 4096;
    static constexpr std::int32_t kPrimaryBufferSize = 65536;
    static constexpr std::int32_t kSecondaryBufferSize = 4096;
    // Bytes that one fill reads at most.
    static constexpr std::int32_t kFillSize = 4096;
    static constexpr std::int32_t kDefaultFramesToMatch = 3;

    CMP3FrameFinder();
    CMP3FrameFinder(const CMP3FrameFinder&) = delete;
    CMP3FrameFinder& operator=(const CMP3FrameFinder&) = delete;

    // How many frames must follow the first one, each exactly behind the one
    // before, for a lock (at least 1).
    void setFramesToMatch(std::int32_t frames);
    std::int32_t getFramesToMatch() const { return m_framesToMatch; }
    // Whether the channel mode may differ between frames of one stream.
    void setChannelModeMayVary(bool mayVary) { m_channelModeMayVary = mayVary; }

    // Reads up to kFillSize bytes from stream; the number read, 0 at its end
    // or when there is no room (before the lock, once 64 KiB are held).
    std::int32_t fill(fenn::IInStream& stream);
    // True when a whole frame stands in the frame buffer.
    bool findFrame();
    // Forgets everything, as a new finder.
    void reset();

    bool isLocked() const { return m_state != State::searching; }
    // The first 64 KiB held no chain of frames.
    bool isLost() const { return m_lost; }
    // Position of the first frame of the lock; -1 before it.
    std::int64_t getLockPosition() const { return m_lockPosition; }

    // The frame that findFrame found, valid until its next call.
    const std::uint8_t* getFrameData() const { return m_frame.data(); }
    std::int32_t getFrameLength() const { return m_frameHeader.frameLength; }
    std::int64_t getFramePosition() const { return m_framePosition; }
    const CMP3FrameHeader& getFrameHeader() const { return m_frameHeader; }

    // The test that each header must pass: it parses, has a bit rate and a
    // length of more than 3 bytes that fits the frame buffer with 4 bytes
    // to spare.
    static bool isUsableFrame(const CMP3FrameHeader& header);

private:
    enum class State : std::int32_t {
        searching = 0,    // gathering bytes for the lock
        sync = 1,         // looking for 0xFF and three set bits
        header = 2,       // gathering the four header bytes
        checkHeader = 3,  // the header is complete
        body = 4,         // copying the frame's bytes
        frameReady = 5
    };

    // Bytes read ahead and not yet taken by the state machine.
    struct Input
    {
        std::uint8_t* data = nullptr;
        std::int32_t capacity = 0;
        std::int32_t fill = 0;
        std::int32_t offset = 0;
        std::int64_t filePosition = 0;  // of data[0]
        std::int32_t available() const { return fill - offset; }
    };

    enum class Chain { locked, broken, needMoreBytes };

    bool tryLock();
    Chain checkChain(std::int32_t offset, const CMP3FrameHeader& head) const;
    bool matchesLock(const CMP3FrameHeader& header) const;
    Input* currentInput();
    // Runs the locked states over the current input; true when a frame is ready.
    bool runLockedStates(Input& input);
    // Judges the four header bytes in the frame buffer: on to the body, or
    // back to the sync search.
    void checkHeader();
    // After a header that failed: keeps the bytes behind its first byte that
    // may begin a new sync.
    void resyncAfterBadHeader();

    std::array<std::uint8_t, kFrameBufferSize> m_frame{};
    std::int32_t m_frameFill = 0;
    std::array<std::uint8_t, kPrimaryBufferSize> m_primaryBytes{};
    std::array<std::uint8_t, kSecondaryBufferSize> m_secondaryBytes{};
    Input m_primary;
    Input m_secondary;
    bool m_readingSecondary = false;
    std::int64_t m_streamPosition = -1;  // of the next byte that fill reads; -1 before the first fill

    State m_state = State::searching;
    std::int32_t m_framesToMatch = kDefaultFramesToMatch;
    bool m_channelModeMayVary = false;
    CMP3FrameHeader m_lock;
    std::int64_t m_lockPosition = -1;
    CMP3FrameHeader m_frameHeader;
    std::int64_t m_framePosition = -1;
    bool m_lost = false;
};

}  // namespace tbx

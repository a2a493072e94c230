#include "formats/mp3/CMP3PiggyBackData.h"

#include "formats/mp3/CMP3FrameFinder.h"
#include "foundation/IStream.h"

namespace tbx {

namespace {

constexpr std::int32_t kID3v2HeaderSize = 10;
constexpr std::int32_t kID3v2FooterSize = 10;
// A head or tail beyond this is no tag but a stream the finder could not
// follow; it is dropped rather than held in memory.
constexpr std::int64_t kMaxBlockSize = 64 * 1024 * 1024;

// The size of an ID3v2 tag at the stream's start with header and footer, or
// 0 when there is none or its size does not fit the stream. The published
// header: "ID3", two version bytes, flags, four bytes of seven bits each.
std::int64_t measureID3v2Tag(fenn::ISeekableInStream& stream, std::int64_t streamSize)
{
    std::uint8_t header[kID3v2HeaderSize];
    stream.seek(0);
    if (streamSize < kID3v2HeaderSize) return 0;
    stream.read(header, kID3v2HeaderSize);
    if (header[0] != 'I' || header[1] != 'D' || header[2] != '3' || header[3] == 0xFF || header[4] == 0xFF) return 0;
    std::int64_t bodySize = 0;
    for (int i = 6; i < 10; ++i) {
        if (header[i] & 0x80) return 0;
        bodySize = (bodySize << 7) | header[i];
    }
    const bool hasFooter = header[3] >= 4 && (header[5] & 0x10) != 0;
    const std::int64_t total = kID3v2HeaderSize + bodySize + (hasFooter ? kID3v2FooterSize : 0);
    return total <= streamSize ? total : 0;
}

std::vector<std::uint8_t> readBlock(fenn::ISeekableInStream& stream, std::int64_t position, std::int64_t size)
{
    if (size <= 0 || size > kMaxBlockSize) return {};
    std::vector<std::uint8_t> block(static_cast<std::size_t>(size));
    stream.seek(position);
    stream.read(block.data(), static_cast<std::int32_t>(size));
    return block;
}

}  // namespace

CMP3PiggyBackData::CMP3PiggyBackData(std::vector<std::uint8_t> head, std::vector<std::uint8_t> tail)
    : m_head(std::move(head)), m_tail(std::move(tail))
{
}

fenn::P<CMP3PiggyBackData> CMP3PiggyBackData::collect(fenn::ISeekableInStream& stream)
{
    const std::int64_t streamSize = stream.getSize();
    const std::int64_t searchStart = measureID3v2Tag(stream, streamSize);
    stream.seek(searchStart);

    auto finder = fenn::make<CMP3FrameFinder>();
    std::int64_t firstFrame = -1;
    std::int64_t audioEnd = -1;
    for (;;) {
        if (finder->findFrame()) {
            if (firstFrame < 0) firstFrame = finder->getFramePosition();
            audioEnd = finder->getFramePosition() + finder->getFrameLength();
            continue;
        }
        if (finder->isLost() || finder->fill(stream) == 0) break;
    }
    if (firstFrame < 0) {
        stream.seek(0);
        return fenn::make<CMP3PiggyBackData>();
    }
    std::vector<std::uint8_t> head = readBlock(stream, 0, firstFrame);
    std::vector<std::uint8_t> tail = readBlock(stream, audioEnd, streamSize - audioEnd);
    stream.seek(0);
    return fenn::make<CMP3PiggyBackData>(std::move(head), std::move(tail));
}

void CMP3PiggyBackData::writeHead(fenn::IOutStream& stream) const
{
    if (!m_head.empty()) stream.write(m_head.data(), getHeadSize());
}

void CMP3PiggyBackData::writeTail(fenn::IOutStream& stream) const
{
    if (!m_tail.empty()) stream.write(m_tail.data(), getTailSize());
}

}  // namespace tbx

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "formats/mp3/CMP3FrameDecoder.h"
#include "formats/mp3/CMP3FrameFinder.h"
#include "formats/mp3/CMP3PiggyBackData.h"
#include "foundation/CMemoryIOStream.h"

// Runs the MPEG frame finder over the bytes, judges every frame it finds with
// the frame decoder, and collects the head and tail as a source does. Each
// frame must be a copy of the input at its position, lie behind the one
// before and fit the frame buffer; head and tail must fit the input.
// Anything else is reported as a crash.
namespace {

// Reads of a few bytes move the borders of the finder's buffers around.
class CTricklingStream : public fenn::CMemoryIOStream
{
public:
    explicit CTricklingStream(std::int32_t readLimit) : m_readLimit(readLimit) {}
    std::int32_t readSome(void* buffer, std::int32_t size) override
    {
        return CMemoryIOStream::readSome(buffer, size < m_readLimit ? size : m_readLimit);
    }

private:
    std::int32_t m_readLimit;
};

fenn::P<CTricklingStream> streamOf(const std::uint8_t* data, std::size_t size, std::int32_t readLimit)
{
    auto stream = fenn::make<CTricklingStream>(readLimit);
    if (size > 0) stream->write(data, static_cast<std::int32_t>(size));
    stream->seek(0);
    return stream;
}

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "FuzzMP3FrameFinder: %s\n", what);
    std::abort();
}

void findAll(const std::uint8_t* data, std::size_t size, std::int32_t readLimit, bool modeMayVary)
{
    auto stream = streamOf(data, size, readLimit);
    auto finder = fenn::make<tbx::CMP3FrameFinder>();
    finder->setChannelModeMayVary(modeMayVary);
    auto decoder = fenn::make<tbx::CMP3FrameDecoder>();
    std::int64_t lastEnd = 0;
    for (;;) {
        if (finder->findFrame()) {
            const std::int64_t position = finder->getFramePosition();
            const std::int32_t length = finder->getFrameLength();
            if (length < 4 || length > tbx::CMP3FrameFinder::kFrameBufferSize - 4) fail("frame length out of range");
            if (position < lastEnd) fail("frame overlaps the one before");
            if (position + length > static_cast<std::int64_t>(size)) fail("frame beyond the input");
            if (std::memcmp(finder->getFrameData(), data + position, static_cast<std::size_t>(length)) != 0)
                fail("frame differs from the input");
            decoder->decodeFrame(finder->getFrameData(), length);
            lastEnd = position + length;
            continue;
        }
        if (finder->isLost()) {
            if (finder->isLocked() || size < tbx::CMP3FrameFinder::kPrimaryBufferSize) fail("lost too early");
            break;
        }
        if (finder->fill(*stream) == 0) break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 512 * 1024) return 0;
    const std::int32_t readLimit = size > 0 ? 1 + data[0] % 64 : 1;
    findAll(data, size, tbx::CMP3FrameFinder::kFillSize, false);
    findAll(data, size, readLimit, true);

    auto stream = streamOf(data, size, tbx::CMP3FrameFinder::kFillSize);
    const fenn::P<tbx::CMP3PiggyBackData> piggyBack = tbx::CMP3PiggyBackData::collect(*stream);
    const std::int64_t around = std::int64_t{piggyBack->getHeadSize()} + piggyBack->getTailSize();
    if (around > static_cast<std::int64_t>(size)) fail("head and tail longer than the input");
    if (piggyBack->getHeadSize() > 0 && std::memcmp(piggyBack->getHeadData(), data, piggyBack->getHeadSize()) != 0)
        fail("head differs from the input");
    return 0;
}

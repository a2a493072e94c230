#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "foundation/CMemoryIOStream.h"
#include "tags/CID3v2Tag.h"

// Reads the bytes as an ID3v2 tag, reads its fields, edits it and writes it
// back. Whatever the input, what this code writes must read back as a sound
// tag that holds the edit; anything else is reported as a crash.
namespace {

constexpr tbx::ID3FrameId kFields[] = {
    tbx::makeID3FrameId("TIT2"), tbx::makeID3FrameId("TPE1"), tbx::makeID3FrameId("TALB"), tbx::makeID3FrameId("TRCK"),
    tbx::makeID3FrameId("TYER"), tbx::makeID3FrameId("TCON"), tbx::makeID3FrameId("TIT3"),
};

fenn::P<fenn::CMemoryIOStream> streamOf(const std::uint8_t* data, std::size_t size)
{
    auto stream = fenn::make<fenn::CMemoryIOStream>();
    if (size > 0) stream->write(data, static_cast<std::int32_t>(size));
    stream->seek(0);
    return stream;
}

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "FuzzID3v2: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 1024 * 1024) return 0;
    auto tag = fenn::make<tbx::CID3v2Tag>();
    const auto input = streamOf(data, size);
    tag->read(*input);
    if (input->getPos() < 0 || input->getPos() > static_cast<std::int64_t>(size)) fail("stream left outside the data");
    for (const tbx::ID3FrameId id : kFields) (void)tag->getText(id);
    (void)tag->getGenreNumber();

    const std::vector<std::uint8_t> asRead = tag->render();
    if (!tag->isSupported()) {
        // A later version is kept as it was read.
        if (asRead.size() > size || !std::equal(asRead.begin(), asRead.end(), data)) fail("later version changed");
        return 0;
    }
    const fenn::String title = fenn::String::copyOfUTF32(U"Fuzz \u00FF\u0101");
    tag->setText(kFields[0], title);
    tag->setGenreNumber(static_cast<std::int32_t>(size % 150) - 1);
    const std::vector<std::uint8_t> written = tag->render();

    auto again = fenn::make<tbx::CID3v2Tag>();
    const auto output = streamOf(written.data(), written.size());
    if (!again->read(*output) || !again->isValid() || again->isDamaged()) fail("written tag does not read back");
    if (output->getPos() != static_cast<std::int64_t>(written.size())) fail("written tag has a wrong size");
    if (!again->getText(kFields[0]).equals(title)) fail("edited text was lost");
    if (again->getFrameCount() != tag->getFrameCount()) fail("frame count changed");
    return 0;
}

#include "tests/formats/mp3/MP3TestSupport.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "audio/CAudioChunk.h"
#include "formats/mp3/CMP3FileAudioSource.h"
#include "foundation/CMemoryIOStream.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURI.h"

namespace mp3test {

std::string run(const std::string& command)
{
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "cannot run: " << command;
        return output;
    }
    char buffer[65536];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, got);
    const int status = pclose(pipe);
    EXPECT_EQ(status, 0) << command;
    return output;
}

std::string quote(const std::filesystem::path& path)
{
    return "'" + path.string() + "'";
}

Bytes readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void writeFile(const std::filesystem::path& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void makeWav(const std::filesystem::path& path, int sampleRate, int channels, double seconds)
{
    const std::string synth = channels == 1 ? "sine 440" : "sine 440 sine 660";
    run("sox -q -D -n -r " + std::to_string(sampleRate) + " -b 16 -c " + std::to_string(channels) + " " + quote(path) +
        " synth " + std::to_string(seconds) + " " + synth + " vol 0.5");
}

void makeMP3(const std::filesystem::path& path, int sampleRate, int channels, double seconds,
             const std::string& lameOptions)
{
    std::filesystem::path wav = path;
    wav.replace_extension(".wav");
    makeWav(wav, sampleRate, channels, seconds);
    run("lame --quiet " + lameOptions + " " + quote(wav) + " " + quote(path));
}

std::vector<std::int16_t> decodeWithMpg123(const std::filesystem::path& path)
{
    const std::string raw = run("mpg123 -q -s " + quote(path));
    std::vector<std::int16_t> samples(raw.size() / 2);
    std::memcpy(samples.data(), raw.data(), samples.size() * 2);
    return samples;
}

Decoded decodeWithSource(const std::filesystem::path& path)
{
    Decoded decoded;
    auto source = fenn::make<tbx::CMP3FileAudioSource>(fenn::CURI::fromPath(fenn::String::copyOf(path.string())));
    source->Open(8, nullptr);
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 44100);
    while (source->Read(*chunk)) {
        const std::pair<int, int> format{chunk->GetSampleRate(), chunk->GetChannels()};
        if (decoded.formats.empty() || decoded.formats.back() != format) decoded.formats.push_back(format);
        const std::int16_t* data = chunk->GetData();
        decoded.samples.insert(decoded.samples.end(), data, data + chunk->GetLength() * chunk->GetChannels());
        decoded.frames += chunk->GetLength();
    }
    source->Close();
    return decoded;
}

namespace {

class CTricklingStream : public fenn::CMemoryIOStream
{
public:
    CTricklingStream(fenn::P<fenn::IMemoryBlock> block, std::int32_t readLimit)
        : CMemoryIOStream(std::move(block)), m_readLimit(readLimit)
    {
    }
    std::int32_t readSome(void* buffer, std::int32_t size) override
    {
        return CMemoryIOStream::readSome(buffer, std::min(size, m_readLimit));
    }

private:
    std::int32_t m_readLimit;
};

}  // namespace

fenn::P<fenn::ISeekableInStream> memoryStream(const Bytes& bytes, std::int32_t readLimit)
{
    auto block = fenn::make<fenn::CMemoryBlock>();
    block->setSize(static_cast<std::int64_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), block->getData());
    return fenn::make<CTricklingStream>(block, readLimit);
}

std::vector<FoundFrame> findFrames(tbx::CMP3FrameFinder& finder, fenn::IInStream& stream)
{
    std::vector<FoundFrame> frames;
    for (;;) {
        if (finder.findFrame()) {
            frames.push_back({finder.getFramePosition(), finder.getFrameLength()});
            continue;
        }
        if (finder.isLost() || finder.fill(stream) == 0) break;
    }
    return frames;
}

std::vector<FoundFrame> findFrames(const Bytes& bytes, std::int32_t readLimit)
{
    auto finder = fenn::make<tbx::CMP3FrameFinder>();
    const auto stream = memoryStream(bytes, readLimit);
    return findFrames(*finder, *stream);
}

void MP3Test::SetUp()
{
    m_diskStreams = fenn::make<fenn::posix::CDiskStreamFactory>();
    fenn::CStreamManager::getInstance()->addFactory(m_diskStreams);
}

void MP3Test::TearDown()
{
    fenn::CStreamManager::getInstance()->removeFactory(m_diskStreams.get());
}

}  // namespace mp3test

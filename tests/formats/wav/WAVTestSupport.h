#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "audio/CAudioChunk.h"
#include "formats/wav/CWAVFileAudioSource.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURI.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/formats/wav/CMemoryFiles.h"
#include "tests/support/TempFolder.h"

// Helpers of the WAV tests: files as bytes, RIFF files built from chunks,
// the whole audio of a file through the WAV source, and the reference tools.
namespace wavtest {

using Bytes = std::vector<std::uint8_t>;

inline fenn::CURI uriOf(const std::filesystem::path& path)
{
    return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
}

inline Bytes readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void writeFile(const std::filesystem::path& path, const Bytes& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline std::vector<std::int16_t> samplesOf(const Bytes& littleEndian)
{
    std::vector<std::int16_t> samples(littleEndian.size() / 2);
    for (std::size_t index = 0; index < samples.size(); ++index) {
        samples[index] = static_cast<std::int16_t>(littleEndian[2 * index] | littleEndian[2 * index + 1] << 8);
    }
    return samples;
}

inline std::uint32_t le32At(const Bytes& bytes, std::size_t at)
{
    return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 | static_cast<std::uint32_t>(bytes[at + 3]) << 24;
}

inline void putLE32(Bytes& bytes, std::size_t at, std::uint32_t value)
{
    for (int index = 0; index < 4; ++index) bytes[at + index] = static_cast<std::uint8_t>(value >> (8 * index));
}

inline void putLE16(Bytes& bytes, std::size_t at, std::uint16_t value)
{
    bytes[at] = static_cast<std::uint8_t>(value);
    bytes[at + 1] = static_cast<std::uint8_t>(value >> 8);
}

// Offset of the first chunk header with this id behind the RIFF header, or
// npos. Walks chunk by chunk, so sample bytes never match.
inline std::size_t findChunk(const Bytes& file, const char* id)
{
    std::size_t at = 12;
    while (at + 8 <= file.size()) {
        if (std::equal(id, id + 4, file.begin() + static_cast<std::ptrdiff_t>(at))) return at;
        at += 8 + le32At(file, at + 4);
    }
    return std::string::npos;
}

// ---- RIFF files from chunks; sizes as given, never padded ----

inline void appendId(Bytes& to, const char* id)
{
    for (int index = 0; index < 4; ++index) to.push_back(static_cast<std::uint8_t>(id[index]));
}

inline void appendLE32(Bytes& to, std::uint32_t value)
{
    for (int index = 0; index < 4; ++index) to.push_back(static_cast<std::uint8_t>(value >> (8 * index)));
}

inline void appendLE16(Bytes& to, std::uint16_t value)
{
    to.push_back(static_cast<std::uint8_t>(value));
    to.push_back(static_cast<std::uint8_t>(value >> 8));
}

inline Bytes chunk(const char* id, const Bytes& body)
{
    Bytes bytes(8 + body.size());
    std::copy(id, id + 4, bytes.begin());
    putLE32(bytes, 4, static_cast<std::uint32_t>(body.size()));
    std::copy(body.begin(), body.end(), bytes.begin() + 8);
    return bytes;
}

inline Bytes pcmFormatBody(std::uint16_t channels, std::uint32_t rate, std::uint16_t bits, std::uint16_t tag = 1)
{
    Bytes body;
    const auto blockAlign = static_cast<std::uint16_t>(bits / 8 * channels);
    appendLE16(body, tag);
    appendLE16(body, channels);
    appendLE32(body, rate);
    appendLE32(body, blockAlign * rate);
    appendLE16(body, blockAlign);
    appendLE16(body, bits);
    return body;
}

inline Bytes infoList(const char* listId, const std::vector<std::pair<const char*, std::string>>& items)
{
    Bytes body;
    appendId(body, "INFO");
    for (const auto& [id, value] : items) {
        const Bytes text(value.begin(), value.end());
        const Bytes item = chunk(id, text);
        body.insert(body.end(), item.begin(), item.end());
    }
    return chunk(listId, body);
}

inline Bytes riffFile(const std::vector<Bytes>& chunks, const char* riffId = "RIFF", const char* waveId = "WAVE")
{
    Bytes body;
    appendId(body, waveId);
    for (const Bytes& piece : chunks) body.insert(body.end(), piece.begin(), piece.end());
    Bytes file;
    appendId(file, riffId);
    appendLE32(file, static_cast<std::uint32_t>(body.size()));
    file.insert(file.end(), body.begin(), body.end());
    return file;
}

inline Bytes sampleBytes(const std::vector<std::int16_t>& samples)
{
    Bytes bytes;
    for (std::int16_t sample : samples) appendLE16(bytes, static_cast<std::uint16_t>(sample));
    return bytes;
}

// ---- reading through the WAV source ----

struct Decoded
{
    std::vector<std::int16_t> samples;
    std::int32_t channels = 0;
    std::int32_t sampleRate = 0;
    std::int64_t frames() const { return channels ? static_cast<std::int64_t>(samples.size()) / channels : 0; }
};

// Every sample of an opened source; chunks of chunkFrames frames at most.
inline Decoded readAll(tbx::IAudioSource& source, std::int32_t chunkFrames = 44100)
{
    Decoded decoded;
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, chunkFrames);
    while (source.Read(*chunk)) {
        decoded.channels = chunk->GetChannels();
        decoded.sampleRate = chunk->GetSampleRate();
        const std::int16_t* data = chunk->GetData();
        decoded.samples.insert(decoded.samples.end(), data, data + chunk->GetLength() * chunk->GetChannels());
    }
    return decoded;
}

inline Decoded readAll(const std::filesystem::path& path)
{
    auto source = fenn::make<tbx::CWAVFileAudioSource>(uriOf(path));
    source->Open(8, nullptr);
    Decoded decoded = readAll(*source);
    source->Close();
    return decoded;
}

// ---- reference tools ----

inline int run(const std::string& command)
{
    return std::system(command.c_str());
}

inline std::string quoted(const std::filesystem::path& path)
{
    return "'" + path.string() + "'";
}

// What ffmpeg decodes the file to, as 16-bit samples in the file's channels.
inline std::vector<std::int16_t> ffmpegSamples(const std::filesystem::path& path, const std::filesystem::path& raw)
{
    const int result =
        run("ffmpeg -nostdin -loglevel quiet -y -i " + quoted(path) + " -f s16le -acodec pcm_s16le " + quoted(raw));
    EXPECT_TRUE(std::filesystem::exists(raw)) << "ffmpeg failed (" << result << ") on " << path;
    return samplesOf(readFile(raw));
}

// Registers the disk streams and the memory files for the time of a test.
class DiskStreams : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_factory = fenn::make<fenn::posix::CDiskStreamFactory>();
        fenn::CStreamManager::getInstance()->addFactory(m_factory);
        fenn::CStreamManager::getInstance()->addFactory(m_memoryFiles);
    }
    void TearDown() override
    {
        fenn::CStreamManager::getInstance()->removeFactory(m_memoryFiles.get());
        fenn::CStreamManager::getInstance()->removeFactory(m_factory.get());
    }

    fenn::P<fenn::posix::CDiskStreamFactory> m_factory;
    fenn::P<CMemoryFiles> m_memoryFiles = fenn::make<CMemoryFiles>();
    tbtest::TempFolder m_folder;
};

}  // namespace wavtest

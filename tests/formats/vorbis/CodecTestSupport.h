#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "audio/CAudioChunk.h"
#include "audio/IAudioSource.h"
#include "foundation/CException.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURI.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/support/TempFolder.h"

// Helpers of the codec suites: files through the program's streams, whole
// decodes, and the command-line reference tools.
namespace tbtest::codec {

// Disk streams reachable through the stream manager for each test, and a
// temporary folder for its files.
class CodecTest : public ::testing::Test
{
protected:
    void SetUp() override { fenn::CStreamManager::getInstance()->addFactory(m_factory); }
    void TearDown() override { fenn::CStreamManager::getInstance()->removeFactory(m_factory.get()); }

    std::filesystem::path file(const std::string& name) const { return m_folder / name; }

    fenn::P<fenn::posix::CDiskStreamFactory> m_factory = fenn::make<fenn::posix::CDiskStreamFactory>();
    TempFolder m_folder;
};

inline fenn::CURI uriOf(const std::filesystem::path& path)
{
    return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
}

inline fenn::P<fenn::ISeekableOutStream> createFile(const std::filesystem::path& path)
{
    return fenn::CStreamManager::getInstance()->openSeekableOutStream(
        uriOf(path), fenn::StreamShare::exclusive, fenn::StreamCreate::createEmpty, fenn::DeleteOnClose::no);
}

// Everything a source gives from Open to the end, with the format of its
// first chunk and the frames per format in the order they came.
struct Decoded
{
    std::int32_t sampleRate = 0;
    std::int32_t channels = 0;
    std::vector<std::int16_t> samples;
    std::vector<std::pair<std::int32_t, std::int64_t>> framesPerRate;
    std::int64_t frames() const { return channels == 0 ? 0 : static_cast<std::int64_t>(samples.size()) / channels; }
};

inline Decoded decodeAll(tbx::IAudioSource& source)
{
    Decoded result;
    source.Open(static_cast<std::int32_t>(tbx::AudioPurpose::conversion), nullptr);
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 44100);
    while (source.Read(*chunk)) {
        if (result.channels == 0) {
            result.sampleRate = chunk->GetSampleRate();
            result.channels = chunk->GetChannels();
        }
        if (result.framesPerRate.empty() || result.framesPerRate.back().first != chunk->GetSampleRate()) {
            result.framesPerRate.emplace_back(chunk->GetSampleRate(), 0);
        }
        result.framesPerRate.back().second += chunk->GetLength();
        if (chunk->HasFormat(result.sampleRate, result.channels)) {
            const std::int16_t* data = chunk->GetData();
            result.samples.insert(result.samples.end(), data, data + chunk->GetLength() * chunk->GetChannels());
        }
    }
    source.Close();
    return result;
}

// The description of the error that opening and decoding the whole source
// throws, or "" when it decodes to its end.
inline std::string decodeError(tbx::IAudioSource& source)
{
    try {
        decodeAll(source);
    } catch (const fenn::CException& error) {
        source.Close();
        return error.getDescription().toStdString();
    }
    return "";
}

// Interleaved noise over the whole 16-bit range, with both extremes in it.
inline std::vector<std::int16_t> noise(std::size_t samples, std::uint32_t seed)
{
    std::mt19937 generator(seed);
    std::uniform_int_distribution<int> value(-32768, 32767);
    std::vector<std::int16_t> result(samples);
    for (auto& sample : result) sample = static_cast<std::int16_t>(value(generator));
    if (samples >= 2) {
        result[0] = -32768;
        result[1] = 32767;
    }
    return result;
}

// Writes interleaved samples to a sink in chunks of framesPerChunk frames.
inline void writeSamples(tbx::IAudioSink& sink, const std::vector<std::int16_t>& samples, std::int32_t sampleRate,
                         std::int32_t channels, std::int32_t framesPerChunk)
{
    auto chunk = fenn::make<tbx::CAudioChunk>(sampleRate, channels, framesPerChunk);
    const auto totalFrames = static_cast<std::int64_t>(samples.size()) / channels;
    for (std::int64_t frame = 0; frame < totalFrames; frame += framesPerChunk) {
        const auto frames = static_cast<std::int32_t>(std::min<std::int64_t>(framesPerChunk, totalFrames - frame));
        std::copy_n(samples.data() + frame * channels, frames * channels, chunk->GetWritableData());
        chunk->SetLength(frames);
        sink.Write(*chunk);
    }
}

struct CommandResult
{
    int status = -1;
    std::string output;
};

// Runs a shell command and collects its standard output and error.
inline CommandResult run(const std::string& command)
{
    CommandResult result;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return result;
    char buffer[4096];
    size_t got = 0;
    while ((got = fread(buffer, 1, sizeof buffer, pipe)) > 0) result.output.append(buffer, got);
    const int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

inline std::string quoted(const std::filesystem::path& path)
{
    return "'" + path.string() + "'";
}

inline std::string readBytes(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void writeBytes(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// Little-endian signed 16-bit samples of a raw file.
inline std::vector<std::int16_t> readRaw16(const std::filesystem::path& path)
{
    const std::string bytes = readBytes(path);
    std::vector<std::int16_t> samples(bytes.size() / 2);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::int16_t>(static_cast<std::uint8_t>(bytes[2 * i]) |
                                               (static_cast<std::uint8_t>(bytes[2 * i + 1]) << 8));
    }
    return samples;
}

}  // namespace tbtest::codec

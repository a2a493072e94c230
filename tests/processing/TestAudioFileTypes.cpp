#include "tests/processing/TestAudioFileTypes.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <thread>

#include "foundation/CError.h"
#include "foundation/CURIError.h"

namespace tbtest {

namespace {

constexpr char kMagic[4] = {'T', 'A', 'U', 'D'};
constexpr std::size_t kHeaderSize = 12;

void putInt32(char* out, std::int32_t value)
{
    const auto bits = static_cast<std::uint32_t>(value);
    for (int i = 0; i < 4; ++i) out[i] = static_cast<char>((bits >> (8 * i)) & 0xFF);
}

std::int32_t getInt32(const char* in)
{
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; ++i) bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(in[i])) << (8 * i);
    return static_cast<std::int32_t>(bits);
}

void encodeHeader(char (&header)[kHeaderSize], std::int32_t sampleRate, std::int32_t channels)
{
    std::memcpy(header, kMagic, 4);
    putInt32(header + 4, sampleRate);
    putInt32(header + 8, channels);
}

}  // namespace

void writeTestAudio(const std::filesystem::path& path, const TestAudio& audio)
{
    char header[kHeaderSize];
    encodeHeader(header, audio.sampleRate, audio.channels);
    std::ofstream file(path, std::ios::binary);
    file.write(header, kHeaderSize);
    for (const std::int16_t sample : audio.samples) {
        const auto bits = static_cast<std::uint16_t>(sample);
        const char bytes[2] = {static_cast<char>(bits & 0xFF), static_cast<char>(bits >> 8)};
        file.write(bytes, 2);
    }
}

TestAudio readTestAudio(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    TestAudio audio;
    audio.sampleRate = 0;
    if (bytes.size() < kHeaderSize || std::memcmp(bytes.data(), kMagic, 4) != 0) return audio;
    audio.sampleRate = getInt32(bytes.data() + 4);
    audio.channels = getInt32(bytes.data() + 8);
    for (std::size_t i = kHeaderSize; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i]);
        const auto high = static_cast<unsigned char>(bytes[i + 1]);
        audio.samples.push_back(static_cast<std::int16_t>(static_cast<std::uint16_t>(low | (high << 8))));
    }
    return audio;
}

TestAudio makeRamp(std::int32_t sampleRate, std::int32_t channels, std::int32_t frames, std::int16_t first)
{
    TestAudio audio{sampleRate, channels, {}};
    for (std::int32_t frame = 0; frame < frames; ++frame) {
        for (std::int32_t channel = 0; channel < channels; ++channel)
            audio.samples.push_back(static_cast<std::int16_t>(first + frame));
    }
    return audio;
}

CTestFileSource::CTestFileSource(std::filesystem::path path, std::int32_t framesPerRead, std::int64_t failAfterFrames,
                                 std::chrono::milliseconds readDelay)
    : m_path(std::move(path)), m_framesPerRead(framesPerRead), m_failAfterFrames(failAfterFrames),
      m_readDelay(readDelay)
{
}

void CTestFileSource::Open(std::int32_t purpose, fenn::IBase*)
{
    m_purpose = purpose;
    m_audio = readTestAudio(m_path);
    if (m_audio.sampleRate == 0) throw fenn::CFileFormatNotSupportedError(fenn::String::copyOf(m_path.string()));
    m_position = 0;
}

fenn::P<fenn::CValueList> CTestFileSource::GetInfo()
{
    auto info = fenn::make<fenn::CValueList>();
    info->setInt("sampleRate", m_audio.sampleRate);
    info->setInt("channels", m_audio.channels);
    return info;
}

fenn::P<fenn::CValueList> CTestFileSource::GetTags()
{
    auto tags = fenn::make<fenn::CValueList>();
    tags->setString("title", fenn::String::copyOf(m_path.stem().string()));
    tags->setString("artist", "Test");
    return tags;
}

bool CTestFileSource::Read(tbx::IAudioChunk& chunk)
{
    const auto total = static_cast<std::int64_t>(m_audio.samples.size()) / m_audio.channels;
    if (m_failAfterFrames >= 0 && m_position >= m_failAfterFrames) throw fenn::CError("Error", "Broken test source.");
    if (m_position >= total) return false;
    if (m_readDelay.count() > 0) std::this_thread::sleep_for(m_readDelay);
    const auto frames = static_cast<std::int32_t>(std::min<std::int64_t>(m_framesPerRead, total - m_position));
    chunk.SetSampleRate(m_audio.sampleRate);
    chunk.SetChannels(m_audio.channels);
    chunk.Reserve(frames, false);
    std::copy_n(m_audio.samples.begin() + m_position * m_audio.channels, frames * m_audio.channels,
                chunk.GetWritableData());
    chunk.SetLength(frames);
    m_position += frames;
    return true;
}

double CTestFileSource::GetProgress() const
{
    const auto total = static_cast<std::int64_t>(m_audio.samples.size()) / std::max(m_audio.channels, 1);
    return total == 0 ? 1.0 : static_cast<double>(m_position) / static_cast<double>(total);
}

std::vector<fenn::String> CTestInputFileType::getExtensions() const
{
    return {fenn::String::copyOf(m_extension)};
}

fenn::P<tbx::IAudioSource> CTestInputFileType::createAudioSource(const fenn::String& extension, const fenn::CURI& uri)
{
    if (extension.isEmpty() || extension.compareNoCase(fenn::String::copyOf(m_extension)) != 0) return nullptr;
    const std::filesystem::path path = uri.toPath().toStdString();
    const auto failure = failAfterFrames.find(path.filename().string());
    auto source = fenn::make<CTestFileSource>(path, framesPerRead,
                                              failure == failAfterFrames.end() ? -1 : failure->second, readDelay);
    sources.push_back(source);
    return source;
}

CTestFileSink::CTestFileSink(fenn::P<fenn::ISeekableOutStream> stream, const fenn::CValueList& settings,
                             std::int64_t failAfterFrames)
    : m_stream(std::move(stream)), m_settingsRate(settings.getInt("sampleRate", 44100)),
      m_settingsChannels(settings.getInt("channels", 2)), m_failAfterFrames(failAfterFrames)
{
}

void CTestFileSink::writeHeader(std::int32_t sampleRate, std::int32_t channels)
{
    char header[kHeaderSize];
    encodeHeader(header, sampleRate, channels);
    m_stream->write(header, kHeaderSize);
    m_sampleRate = sampleRate;
    m_channels = channels;
    m_headerWritten = true;
}

void CTestFileSink::Write(const tbx::IAudioChunk& chunk)
{
    if (m_failAfterFrames >= 0 && m_written >= m_failAfterFrames) throw fenn::CError("Error", "Broken test sink.");
    if (!m_headerWritten) writeHeader(chunk.GetSampleRate(), chunk.GetChannels());
    if (!chunk.HasFormat(m_sampleRate, m_channels)) throw fenn::CError("Error", "The test sink got another format.");
    // The file is little-endian, as the host.
    m_stream->write(chunk.GetData(), chunk.GetSizeInBytes());
    m_written += chunk.GetLength();
}

void CTestFileSink::Finish()
{
    if (!m_headerWritten) writeHeader(m_settingsRate, m_settingsChannels);
    m_finished = true;
}

bool CTestOutputFileType::isExtension(const fenn::String& extension) const
{
    return extension.compareNoCase(".taud") == 0;
}

void CTestOutputFileType::getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const
{
    settings.setInt("preset", selector);
}

fenn::P<tbx::IAudioSink> CTestOutputFileType::createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                                              const fenn::CValueList& settings,
                                                              const fenn::CValueList& tags)
{
    if (failOnCreate) throw fenn::CFileFormatNotSupportedError();
    Created entry{fenn::make<CTestFileSink>(stream, settings, failAfterFrames), fenn::make<fenn::CValueList>(),
                  fenn::make<fenn::CValueList>()};
    entry.settings->assign(settings);
    entry.tags->assign(tags);
    created.push_back(entry);
    return entry.sink;
}

fenn::P<fenn::CValueList> CLiveTestSource::GetInfo()
{
    auto info = fenn::make<fenn::CValueList>();
    info->setInt("sampleRate", 44100);
    info->setInt("channels", 2);
    return info;
}

bool CLiveTestSource::Read(tbx::IAudioChunk& chunk)
{
    if (m_reads > m_emptyReads) return false;
    chunk.SetSampleRate(44100);
    chunk.SetChannels(2);
    const std::int32_t frames = m_reads == m_emptyReads ? m_frames : 0;
    chunk.Reserve(frames, false);
    std::fill_n(chunk.GetWritableData(), frames * 2, std::int16_t{0});
    chunk.SetLength(frames);
    ++m_reads;
    return true;
}

void CRecordingFilter::Analyse(const tbx::IAudioChunk& chunk)
{
    const std::int16_t* data = chunk.GetData();
    for (std::int32_t i = 0; i < chunk.GetLength() * chunk.GetChannels(); ++i) analysedSum += data[i];
    analysedFrames += chunk.GetLength();
}

void CRecordingFilter::Process(tbx::IAudioChunk& chunk)
{
    std::int16_t* data = chunk.GetWritableData();
    for (std::int32_t i = 0; i < chunk.GetLength() * chunk.GetChannels(); ++i)
        data[i] = static_cast<std::int16_t>(-data[i]);
    processedFrames += chunk.GetLength();
}

}  // namespace tbtest

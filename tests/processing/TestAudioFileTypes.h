#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "audio/IAudioFilter.h"
#include "audio/IAudioSource.h"
#include "formats/IFileType.h"
#include "foundation/CObject.h"
#include "foundation/CValueList.h"
#include "foundation/IStream.h"

// Test doubles of a file format, for the jobs' tests: a ".taud" file is the
// magic "TAUD", the sample rate and the channel count as 32-bit
// little-endian numbers, then interleaved 16-bit samples. Each double can
// be told to fail at a given point, so a test can break an item wherever it
// likes.
namespace tbtest {

struct TestAudio
{
    std::int32_t sampleRate = 44100;
    std::int32_t channels = 2;
    std::vector<std::int16_t> samples;
};

void writeTestAudio(const std::filesystem::path& path, const TestAudio& audio);
// A file that is no ".taud" file gives sampleRate 0.
TestAudio readTestAudio(const std::filesystem::path& path);
// frames frames of a ramp that starts at first, the same on every channel.
TestAudio makeRamp(std::int32_t sampleRate, std::int32_t channels, std::int32_t frames, std::int16_t first = 0);

// Reads a ".taud" file in reads of a fixed size; throws CError("Broken test
// source.") once failAfterFrames frames are read, when that is not negative.
class CTestFileSource : public fenn::CObject, public virtual tbx::IAudioSource
{
public:
    CTestFileSource(std::filesystem::path path, std::int32_t framesPerRead, std::int64_t failAfterFrames,
                    std::chrono::milliseconds readDelay = {});

    fenn::String GetTypeName() const override { return "TestAudio"; }
    void Open(std::int32_t purpose, fenn::IBase* context) override;
    fenn::P<fenn::CValueList> GetInfo() override;
    // "title" is the file's name without its extension, "artist" "Test".
    fenn::P<fenn::CValueList> GetTags() override;
    bool Read(tbx::IAudioChunk& chunk) override;
    bool IsLive() const override { return false; }
    double GetProgress() const override;
    void Reset() override { m_position = 0; }
    void Close() override { m_closed = true; }

    std::int32_t openPurpose() const { return m_purpose; }
    bool closed() const { return m_closed; }

private:
    std::filesystem::path m_path;
    std::int32_t m_framesPerRead;
    std::int64_t m_failAfterFrames;
    std::chrono::milliseconds m_readDelay;
    TestAudio m_audio;
    std::int64_t m_position = 0;
    std::int32_t m_purpose = 0;
    bool m_closed = false;
};

// Opens ".taud" files (or the extension it is given). failAfterFrames maps
// a file name to the frame count at which its source breaks.
class CTestInputFileType : public fenn::CObject, public virtual tbx::IInputFileType
{
public:
    explicit CTestInputFileType(std::string extension = ".taud") : m_extension(std::move(extension)) {}

    std::vector<fenn::String> getExtensions() const override;
    tbx::FileFilter getFileFilter() const override { return {"Test files", "*.taud"}; }
    fenn::P<tbx::IAudioSource> createAudioSource(const fenn::String& extension, const fenn::CURI& uri) override;

    std::int32_t framesPerRead = 1000;
    // A pause in every read, to make a file take its time.
    std::chrono::milliseconds readDelay{0};
    std::map<std::string, std::int64_t> failAfterFrames;
    // Every source this type made, in order.
    std::vector<fenn::P<CTestFileSource>> sources;

private:
    std::string m_extension;
};

// Writes ".taud" files. The header takes the format of the first chunk, or
// "sampleRate" and "channels" of the settings for a file without audio; a
// chunk of another format than the first throws.
class CTestFileSink : public fenn::CObject, public virtual tbx::IAudioSink
{
public:
    CTestFileSink(fenn::P<fenn::ISeekableOutStream> stream, const fenn::CValueList& settings,
                  std::int64_t failAfterFrames);

    void Write(const tbx::IAudioChunk& chunk) override;
    void Finish() override;
    void Abort() override { m_aborted = true; }

    bool finished() const { return m_finished; }
    bool aborted() const { return m_aborted; }

private:
    void writeHeader(std::int32_t sampleRate, std::int32_t channels);

    fenn::P<fenn::ISeekableOutStream> m_stream;
    std::int32_t m_settingsRate;
    std::int32_t m_settingsChannels;
    std::int64_t m_failAfterFrames;
    std::int64_t m_written = 0;
    bool m_headerWritten = false;
    std::int32_t m_sampleRate = 0;
    std::int32_t m_channels = 0;
    bool m_finished = false;
    bool m_aborted = false;
};

// The output side of ".taud", id "TestAudio". Presets write their selector
// as "preset". Each sink it makes is kept with copies of the settings and
// tags it got. failOnCreate makes createAudioSink throw
// CFileFormatNotSupportedError; failAfterFrames breaks the sinks' Write.
class CTestOutputFileType : public fenn::CObject, public virtual tbx::IOutputFileType
{
public:
    fenn::String getId() const override { return "TestAudio"; }
    fenn::String getName() const override { return "Test Audio"; }
    fenn::String getDescription() const override { return "Test audio files."; }
    fenn::String getExtension() const override { return ".taud"; }
    bool isExtension(const fenn::String& extension) const override;
    void getPresetSettings(fenn::CValueList& settings, std::int32_t selector) const override;
    fenn::String getSettingsDescription(const fenn::CValueList&, tbx::DescriptionForm) const override { return {}; }
    fenn::String getPresetDescription(std::int32_t, tbx::DescriptionForm) const override { return {}; }
    std::int64_t estimateFileSize(const fenn::CValueList&, double) const override { return -1; }
    fenn::P<tbx::IAudioSink> createAudioSink(const fenn::P<fenn::ISeekableOutStream>& stream,
                                             const fenn::CValueList& settings, const fenn::CValueList& tags) override;

    struct Created
    {
        fenn::P<CTestFileSink> sink;
        fenn::P<fenn::CValueList> settings;
        fenn::P<fenn::CValueList> tags;
    };
    std::vector<Created> created;
    bool failOnCreate = false;
    std::int64_t failAfterFrames = -1;
};

// A source that is live: it gives emptyReads empty chunks, then one chunk of
// frames frames of silence, then ends. Its progress stays 0 until the data.
class CLiveTestSource : public fenn::CObject, public virtual tbx::IAudioSource
{
public:
    CLiveTestSource(std::int32_t emptyReads, std::int32_t frames) : m_emptyReads(emptyReads), m_frames(frames) {}

    fenn::String GetTypeName() const override { return "Live"; }
    void Open(std::int32_t, fenn::IBase*) override { m_reads = 0; }
    fenn::P<fenn::CValueList> GetInfo() override;
    fenn::P<fenn::CValueList> GetTags() override { return fenn::make<fenn::CValueList>(); }
    bool Read(tbx::IAudioChunk& chunk) override;
    bool IsLive() const override { return true; }
    double GetProgress() const override { return m_reads > m_emptyReads ? 1.0 : 0.0; }
    void Reset() override { m_reads = 0; }
    void Close() override {}

private:
    std::int32_t m_emptyReads;
    std::int32_t m_frames;
    std::int32_t m_reads = 0;
};

// Records what it sees and, when processing, negates every sample.
class CRecordingFilter : public fenn::CObject, public virtual tbx::IAudioFilter
{
public:
    explicit CRecordingFilter(bool needsAnalysis) : m_needsAnalysis(needsAnalysis) {}

    fenn::String GetId() const override { return "Recording"; }
    fenn::String GetName() const override { return "Recording"; }
    fenn::String GetDescription() const override { return {}; }
    bool NeedsAnalysis() const override { return m_needsAnalysis; }
    void StartAnalysis() override { calls.push_back("StartAnalysis"); }
    void Analyse(const tbx::IAudioChunk& chunk) override;
    void EndAnalysis() override { calls.push_back("EndAnalysis"); }
    void StartProcessing() override { calls.push_back("StartProcessing"); }
    void Process(tbx::IAudioChunk& chunk) override;
    void EndProcessing() override { calls.push_back("EndProcessing"); }

    std::vector<std::string> calls;
    std::int64_t analysedFrames = 0;
    std::int64_t analysedSum = 0;
    std::int64_t processedFrames = 0;

private:
    bool m_needsAnalysis;
};

}  // namespace tbtest

#include <cstdint>
#include <cstdlib>

#include "audio/CAudioChunk.h"
#include "formats/wav/CWAVFileAudioSource.h"
#include "formats/wav/WAVTexts.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/CValueList.h"
#include "foundation/IStringLocalizer.h"
#include "tests/formats/wav/CMemoryFiles.h"

// Reads the bytes as a WAV file through the WAV source: header walk, LIST
// INFO, decoder set-up and every sample. The source may refuse the file or
// find it corrupted; any other error, and any crash, is a finding.
namespace {

constexpr const char* kInputURI = "mem:input.wav";
// A source that keeps delivering is cut off here; inputs are small.
constexpr int kMaxReads = 100000;

wavtest::CMemoryFiles& memoryFiles()
{
    static const fenn::P<wavtest::CMemoryFiles> files = [] {
        auto made = fenn::make<wavtest::CMemoryFiles>();
        fenn::CStreamManager::getInstance()->addFactory(made);
        return made;
    }();
    return *files;
}

void readToTheEnd(const fenn::CURI& uri)
{
    auto source = fenn::make<tbx::CWAVFileAudioSource>(uri);
    source->GetInfo();
    source->GetTags();
    source->Open(8, nullptr);
    auto chunk = fenn::make<tbx::CAudioChunk>(44100, 2, 4096);
    for (int reads = 0; reads < kMaxReads && source->Read(*chunk); ++reads) {
        const double progress = source->GetProgress();
        if (!(progress >= 0.0 && progress <= 1.0)) std::abort();
        if (chunk->GetChannels() < 1 || chunk->GetChannels() > 2 || chunk->GetSampleRate() <= 0) std::abort();
    }
    source->Close();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    memoryFiles().put("input.wav", data, size);
    try {
        readToTheEnd(fenn::CURI(kInputURI));
    } catch (const fenn::CFileFormatNotSupportedError&) {
    } catch (const fenn::CError& error) {
        if (error.getDescription() != fenn::localize(tbx::wavTexts::corrupted)) std::abort();
    }
    return 0;
}

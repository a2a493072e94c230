#pragma once

#include <cstdint>

#include "foundation/IValueStore.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace tbx {

// Whether a wizard lets the user keep the source's quality; ripping has no
// source file whose quality could be kept.
enum class KeepQuality { allowed, forbidden };

// The two formats whose quality is rate, bits and channels.
enum class PCMFormat { wav, flac };

// The last quality the user chose for a PCM format, with the values a first
// run starts from.
struct PCMQualityChoice
{
    std::int32_t sampleRate = 44100;
    std::int32_t bitsPerSample = 16;
    std::int32_t channels = 2;
};

// The last MP3 quality. The bit rate is in bits per second as in the
// encoder settings; a sample rate of -1 lets the encoder choose.
struct MP3QualityChoice
{
    std::int32_t bitRate = 160000;
    bool vbr = true;
    std::int32_t channels = 2;
    std::int32_t sampleRate = -1;
};

// The last Ogg Vorbis quality; a first run starts from the encoder's defaults.
struct VorbisQualityChoice
{
    std::int32_t qualityIndex = 5;
    std::int32_t sampleRate = 44100;
    std::int32_t channels = 2;
};

// The choices of the format and quality pages that a module remembers from
// one run to the next, in its value store under its own prefix ("convert.",
// "ripAudioCD."; empty for keys of no module): "LastFormat",
// "LastQuality", and per format "WAV.LastSampleRate" and its kin. Reads
// never throw and give the defaults for what was never stored; writes throw
// what the store throws. A value object over a shared store; GUI thread.
class CRememberedSettings
{
public:
    CRememberedSettings(fenn::P<fenn::IValueStore> store, fenn::String modulePrefix);

    const fenn::String& getModulePrefix() const { return m_modulePrefix; }

    // The output type id last chosen, empty when there is none.
    fenn::String readLastFormat() const;
    void writeLastFormat(const fenn::String& formatId);

    // The quality selector last chosen. Anything outside 0 to 5, and so a
    // first run, gives keep quality (0); where that is forbidden, CD (1).
    std::int32_t readLastQuality(KeepQuality keepQuality) const;
    void writeLastQuality(std::int32_t selector);

    PCMQualityChoice readPCMQuality(PCMFormat format) const;
    void writePCMQuality(PCMFormat format, const PCMQualityChoice& choice);

    // The sample rate is read under "MP3.lastSampleRate" but written under
    // "MP3.LastSampleRate", as the MP3 page has always done. In a store whose
    // names mind case the remembered rate is therefore never read back and
    // each run starts with the automatic rate (-1); the settings database
    // ignores the case of names, so there the two meet.
    MP3QualityChoice readMP3Quality() const;
    void writeMP3Quality(const MP3QualityChoice& choice);

    VorbisQualityChoice readVorbisQuality() const;
    void writeVorbisQuality(const VorbisQualityChoice& choice);

private:
    fenn::String makeKey(const char* name) const { return m_modulePrefix + name; }
    std::int32_t readInt(const char* name, std::int32_t defaultValue) const;

    fenn::P<fenn::IValueStore> m_store;
    fenn::String m_modulePrefix;
};

}  // namespace tbx

#pragma once

#include <cstdint>

#include "formats/IFileType.h"
#include "foundation/CValueList.h"

namespace tbx {

// The quality selectors shared by every page, dialog and job.
namespace qualitySelector {
inline constexpr std::int32_t keep = 0;
inline constexpr std::int32_t cd = 1;
inline constexpr std::int32_t good = 2;
inline constexpr std::int32_t medium = 3;
inline constexpr std::int32_t low = 4;
inline constexpr std::int32_t custom = 5;
}  // namespace qualitySelector

// The names of the encoder settings in the value lists that travel from the
// quality pages to the sinks, and of the facts of a source that the
// keep-quality rules read. Each sink reads the ones of its format.
namespace settingKeys {
inline constexpr const char* sampleRate = "sampleRate";
inline constexpr const char* channels = "channels";
inline constexpr const char* bitsPerSample = "bitsPerSample";
// Bits per second.
inline constexpr const char* bitRate = "bitRate";
// MP3: variable bit rate around "bitRate".
inline constexpr const char* vbr = "vbr";
// Ogg Vorbis: quality mode from 0 to 10, or managed mode with the three rates.
inline constexpr const char* qualityIndex = "qualityIndex";
inline constexpr const char* avgBitRate = "avgBitRate";
inline constexpr const char* minBitRate = "minBitRate";
inline constexpr const char* maxBitRate = "maxBitRate";
// WMA: quality-driven variable rate (quality 0.0 to 1.0) or a constant rate.
inline constexpr const char* vbrEnabled = "vbrEnabled";
inline constexpr const char* vbrQuality = "vbrQuality";
inline constexpr const char* cbrBitRate = "cbrBitRate";
// Set by a caller that must know the output size before encoding: formats
// that can then choose a constant bit rate.
inline constexpr const char* estimateSize = "estimateSize";
}  // namespace settingKeys

// Turns a quality choice into the settings an output type's sink reads:
// the custom settings, a preset, or for "keep quality" settings that match
// the source. Stateless; any thread.
class CEncodeSettingsManager
{
public:
    // sourceType is the source's type name ("WAV", "MP3", "CDAudioTrack"...),
    // sourceInfo its information list ("sampleRate", "channels",
    // "bitsPerSample", "bitRate", "minBitRate", "maxBitRate"). A source of
    // unknown type with keep quality leaves result empty.
    //
    // The custom selector makes result a copy of customSettings; the presets
    // and keep quality add to result. A caller that must know the output
    // size before encoding puts "estimateSize" true into result first: WMA
    // then gets a constant bit rate instead of a quality.
    static void getEncodeSettings(fenn::CValueList& result, const IOutputFileType& outputType, std::int32_t selector,
                                  const fenn::CValueList& customSettings, const fenn::String& sourceType,
                                  const fenn::CValueList& sourceInfo);
};

}  // namespace tbx

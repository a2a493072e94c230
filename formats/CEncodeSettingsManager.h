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
    static void getEncodeSettings(fenn::CValueList& result, const IOutputFileType& outputType, std::int32_t selector,
                                  const fenn::CValueList& customSettings, const fenn::String& sourceType,
                                  const fenn::CValueList& sourceInfo);
};

}  // namespace tbx

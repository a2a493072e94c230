#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the Ogg Vorbis codec, with their keys.
namespace tbx::vorbisTexts {

inline constexpr fenn::TextKey notVorbis{"tbx.CVorbisError.OV_ENOTVORBIS", "This is not an Ogg Vorbis file."};
inline constexpr fenn::TextKey unknownVersion{"tbx.CVorbisError.OV_EVERSION", "Unknown Vorbis file version."};
inline constexpr fenn::TextKey corruptedStream{"tbx.CVorbisError.CorruptedStreamError", "The input file is corrupted."};
inline constexpr fenn::TextKey genericDecodeError{"tbx.CVorbisError.GenericDecodeError",
                                                  "An error occurred during the processing of Ogg Vorbis audio data."};

inline constexpr fenn::TextKey all[] = {notVorbis, unknownVersion, corruptedStream, genericDecodeError};

}  // namespace tbx::vorbisTexts

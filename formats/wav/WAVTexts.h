#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the WAV source and sink, with their keys. The
// texts of the WAV file types live with the other file types' texts.
namespace tbx::wavTexts {

using fenn::TextKey;

inline constexpr TextKey corrupted{"tbx.CWAVFileAudioSource.Corrupted", "The file is corrupted."};

inline constexpr TextKey all[] = {corrupted};

}  // namespace tbx::wavTexts

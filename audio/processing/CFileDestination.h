#pragma once

#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "foundation/String.h"

namespace tbx {

// Where the output of a file job goes.
namespace destinationMode {
// A folder on the desktop; the page puts its full place into the folder.
inline constexpr std::int32_t desktopFolder = 0;
// A folder chosen anywhere.
inline constexpr std::int32_t folder = 1;
// The folder of each source file.
inline constexpr std::int32_t sourceFolder = 2;
}  // namespace destinationMode

// What a job does with a file that is already at a target's place. Every
// value other than the first two leaves the file to be overwritten.
namespace existingFilePolicy {
// Renames it to "<stem>-old<ext>", "<stem>-old2<ext>"...
inline constexpr std::int32_t rename = 0;
// Moves it to the user's trash.
inline constexpr std::int32_t moveToTrash = 1;
inline constexpr std::int32_t overwrite = 2;
}  // namespace existingFilePolicy

// The output location that the output location page hands to a job: a mode
// and, for the two folder modes, the folder. A value: the page and the job
// each keep their own copy. Any thread.
class CFileDestination : public fenn::CObject
{
public:
    CFileDestination() = default;
    CFileDestination(std::int32_t mode, fenn::CURI folder);

    std::int32_t getMode() const { return m_mode; }
    void setMode(std::int32_t mode) { m_mode = mode; }
    const fenn::CURI& getFolder() const { return m_folder; }
    void setFolder(const fenn::CURI& folder) { m_folder = folder; }

    // The folder that takes the output made from source.
    fenn::CURI getTargetFolder(const fenn::CURI& source) const;
    // The output's place: the target folder, the name of source without
    // its extension, and extension (with its dot, or empty).
    fenn::CURI getTargetURI(const fenn::CURI& source, const fenn::String& extension) const;

    // The name of a file without its extension: "x" of "x.wav" and of "x",
    // "a.b" of "a.b.wav".
    static fenn::String getFileNameStem(const fenn::CURI& file);

private:
    std::int32_t m_mode = destinationMode::sourceFolder;
    fenn::CURI m_folder;
};

}  // namespace tbx

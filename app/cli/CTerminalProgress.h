#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

#include "audio/IProgress.h"
#include "foundation/CObject.h"

namespace tbx::cli {

// How a job's progress reaches the terminal.
enum class ProgressDisplay {
    // The action, the item's bar and the whole job's bar, redrawn in place.
    bars,
    // One line for each new action, for logs and pipes.
    lines,
};

// Shows a job's progress on a stream (the standard error). Bars are redrawn
// at most ten times a second; a new action is printed at once in either
// form. Listens on the job's thread; finish ends the display.
class CTerminalProgress : public fenn::CObject, public virtual IProgressListener
{
public:
    CTerminalProgress(std::FILE* out, ProgressDisplay display, std::int32_t itemCount);

    void onProgress(IProgress* progress) override;
    // Removes the bars, so that what follows starts on a clean line.
    void finish();

    // A bar of width cells for a fraction from 0 to 1: "#" done, "-" to do.
    static std::string makeBar(double fraction, int width);

private:
    void draw(IProgress& progress);
    int terminalWidth() const;

    std::FILE* m_out;
    ProgressDisplay m_display;
    std::int32_t m_itemCount;
    std::string m_lastAction;
    std::chrono::steady_clock::time_point m_lastDraw;
    bool m_drawn = false;
};

}  // namespace tbx::cli

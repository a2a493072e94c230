#include "app/cli/CTerminalProgress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>

namespace tbx::cli {

namespace {

using namespace std::chrono_literals;

constexpr auto kRedrawInterval = 100ms;
constexpr int kDefaultWidth = 80;
constexpr int kBarLines = 3;
// "overall [" ... "] 100 %  file 999 of 999"
constexpr int kBarMargin = 36;
constexpr int kShortestBar = 10;
constexpr int kLongestBar = 50;

int percentOf(double fraction)
{
    return static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100.0 + 0.5);
}

// The first columns of a UTF-8 text, counting code points.
std::string clip(const std::string& text, int columns)
{
    int seen = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) == 0x80) continue;
        if (seen == columns) return text.substr(0, i);
        ++seen;
    }
    return text;
}

}  // namespace

CTerminalProgress::CTerminalProgress(std::FILE* out, ProgressDisplay display, std::int32_t itemCount)
    : m_out(out), m_display(display), m_itemCount(itemCount)
{
}

std::string CTerminalProgress::makeBar(double fraction, int width)
{
    const int done = static_cast<int>(std::floor(std::clamp(fraction, 0.0, 1.0) * width));
    return std::string(static_cast<std::size_t>(done), '#') + std::string(static_cast<std::size_t>(width - done), '-');
}

void CTerminalProgress::onProgress(IProgress* progress)
{
    const std::string action = progress->getItemText().toStdString();
    const bool newAction = action != m_lastAction;
    if (m_display == ProgressDisplay::lines) {
        if (newAction && !action.empty()) std::fprintf(m_out, "%s\n", action.c_str());
        m_lastAction = action;
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (!newAction && m_drawn && now - m_lastDraw < kRedrawInterval) return;
    m_lastAction = action;
    m_lastDraw = now;
    draw(*progress);
}

void CTerminalProgress::draw(IProgress& progress)
{
    const int width = terminalWidth();
    const int barWidth = std::clamp(width - kBarMargin, kShortestBar, kLongestBar);
    const double total = progress.getOverallProgress();
    const int file = std::min(m_itemCount, static_cast<int>(total * m_itemCount) + 1);

    // Back to the start of the bars, each line cleared before it is written.
    if (m_drawn) std::fprintf(m_out, "\x1b[%dF", kBarLines);
    std::fprintf(m_out, "\x1b[2K%s\n", clip(m_lastAction, width - 1).c_str());
    std::fprintf(m_out, "\x1b[2Kitem    [%s] %3d %%\n", makeBar(progress.getItemProgress(), barWidth).c_str(),
                 percentOf(progress.getItemProgress()));
    std::fprintf(m_out, "\x1b[2Koverall [%s] %3d %%  file %d of %d\n", makeBar(total, barWidth).c_str(),
                 percentOf(total), std::max(file, 1), m_itemCount);
    std::fflush(m_out);
    m_drawn = true;
}

void CTerminalProgress::finish()
{
    if (m_display != ProgressDisplay::bars || !m_drawn) return;
    std::fprintf(m_out, "\x1b[%dF\x1b[J", kBarLines);
    std::fflush(m_out);
    m_drawn = false;
}

int CTerminalProgress::terminalWidth() const
{
    winsize size{};
    if (::ioctl(::fileno(m_out), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    return kDefaultWidth;
}

}  // namespace tbx::cli

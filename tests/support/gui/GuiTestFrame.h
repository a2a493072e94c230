#pragma once

#include <string>

#include "gui/CFrameWindow.h"
#include "gui/layout/CGrowLayout.h"

namespace tbtest {

// A frame off screen (no platform window) for widget tests: a vertical grow
// layout with a margin, widgets added in order, rendering on demand, pixels
// to read and the picture written to PNG. When the test that made it has
// failed, the destructor writes the frame to
// <build>/test-output/<suite>.<test>.png, so a failure can be looked at.
class GuiTestFrame
{
public:
    explicit GuiTestFrame(int width = 400, int height = 300, double scale = 1.0);
    ~GuiTestFrame();
    GuiTestFrame(const GuiTestFrame&) = delete;
    GuiTestFrame& operator=(const GuiTestFrame&) = delete;

    fenn::gui::CFrameWindow& frame() { return *m_frame; }
    fenn::P<fenn::gui::CFrameWindow> framePointer() const { return m_frame; }
    // Adds a window to the frame's layout.
    void add(const fenn::P<fenn::gui::CWindow>& window, const fenn::gui::CLayoutParams& params = {});
    // Lays out and paints what is dirty.
    void render();
    // The colour of the device pixel at x, y of the last render (alpha 255).
    fenn::gui::CColor pixel(int x, int y) const;
    // The centre of a window, in frame coordinates.
    fenn::gui::CPoint centreOf(const fenn::gui::CWindow& window) const;
    // Writes the frame to <build>/test-output/<name>.png and returns the path.
    std::string writePNG(const std::string& name) const;

private:
    fenn::P<fenn::gui::CFrameWindow> m_frame;
    fenn::P<fenn::gui::CGrowLayout> m_layout;
};

// The folder where GUI tests leave their pictures.
std::string testOutputFolder();

}  // namespace tbtest

#include "tests/support/gui/GuiTestFrame.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace tbtest {

using namespace fenn::gui;

std::string testOutputFolder()
{
    const std::filesystem::path folder = std::filesystem::path(TB_TEST_OUTPUT_DIR);
    std::filesystem::create_directories(folder);
    return folder.string();
}

GuiTestFrame::GuiTestFrame(int width, int height, double scale)
    : m_frame(fenn::make<CFrameWindow>()), m_layout(fenn::make<CGrowLayout>(Orientation::vertical))
{
    m_frame->setScaleFactor(scale);
    m_frame->setBounds({0, 0, width, height});
    m_layout->setSpacing(8);
    m_frame->setLayout(m_layout);
    m_frame->setLayoutMargins(12, 12, 12, 12);
    m_frame->show();
}

GuiTestFrame::~GuiTestFrame()
{
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    if (test && ::testing::Test::HasFailure()) {
        render();
        const std::string path = writePNG(std::string(test->test_suite_name()) + "." + test->name());
        std::printf("The frame of the failed test: %s\n", path.c_str());
    }
}

void GuiTestFrame::add(const fenn::P<CWindow>& window, const CLayoutParams& params)
{
    m_frame->addChild(window);
    m_layout->addItem(window, params);
}

void GuiTestFrame::render()
{
    m_frame->updateAndPaint();
}

CColor GuiTestFrame::pixel(int x, int y) const
{
    cairo_surface_t* buffer = m_frame->getBuffer();
    cairo_surface_flush(buffer);
    const int width = cairo_image_surface_get_width(buffer);
    const int height = cairo_image_surface_get_height(buffer);
    if (x < 0 || y < 0 || x >= width || y >= height) return {};
    const unsigned char* row = cairo_image_surface_get_data(buffer) + y * cairo_image_surface_get_stride(buffer);
    const std::uint32_t argb = reinterpret_cast<const std::uint32_t*>(row)[x];
    return {static_cast<std::uint8_t>(argb >> 16), static_cast<std::uint8_t>(argb >> 8),
            static_cast<std::uint8_t>(argb), 255};
}

CPoint GuiTestFrame::centreOf(const CWindow& window) const
{
    const CRect rect = window.toFrame(window.getClientRect());
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

std::string GuiTestFrame::writePNG(const std::string& name) const
{
    const std::string path = (std::filesystem::path(testOutputFolder()) / (name + ".png")).string();
    m_frame->writePNG(fenn::String::copyOf(path));
    return path;
}

}  // namespace tbtest

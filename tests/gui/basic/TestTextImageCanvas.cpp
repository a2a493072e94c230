#include <gtest/gtest.h>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/widgets/CCanvas.h"
#include "gui/widgets/CImageButton.h"
#include "gui/widgets/CImageDisplay.h"
#include "gui/widgets/CTextArea.h"
#include "gui/widgets/CTextField.h"
#include "tests/gui/basic/BasicWidgetTests.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using basictest::Recorder;
using fenn::make;
using fenn::P;

// The first and last columns of rect (frame coordinates) where anything
// differs from the background, or {-1, -1}.
std::pair<int, int> inkColumns(const tbtest::GuiTestFrame& test, const CRect& rect, CColor background)
{
    int first = -1;
    int last = -1;
    for (int x = rect.x; x < rect.right(); ++x) {
        for (int y = rect.y; y < rect.bottom(); ++y) {
            if (test.pixel(x, y) != background) {
                if (first < 0) first = x;
                last = x;
                break;
            }
        }
    }
    return {first, last};
}

// The last row of rect that holds anything but the background, or -1.
int lastInkRow(const tbtest::GuiTestFrame& test, const CRect& rect, CColor background)
{
    for (int y = rect.bottom() - 1; y >= rect.y; --y) {
        for (int x = rect.x; x < rect.right(); ++x) {
            if (test.pixel(x, y) != background) return y;
        }
    }
    return -1;
}

const char* const kLongText =
    "The converter reads each file, changes the sample rate and the channels where the target format needs it, "
    "and writes the result next to the original unless another folder was chosen. Files that already exist are "
    "kept, replaced or renamed as the setting below says.";

TEST(TextField, ShowsOneLineAlignedAndWholeAtEveryScale)
{
    const CStyle& style = CStyle::get();
    const char* const text = "Converted 12 of 40 files";
    int inkWidth[2] = {};
    for (const int scale : {1, 2}) {
        tbtest::GuiTestFrame test(400, 200, scale);
        auto left = make<CTextField>(text);
        auto right = make<CTextField>(text);
        right->setTextAlign(TextAlign::right);
        test.add(left);
        test.add(right, {.horzGrow = 1});
        test.render();
        const CSize preferred = left->getSize(SizeType::preferred);
        EXPECT_EQ(preferred.width, style.font->measureText(text).width);
        EXPECT_EQ(left->getSize(SizeType::max).height, preferred.height);
        EXPECT_LT(left->getSize(SizeType::min).width, preferred.width);
        EXPECT_FALSE(left->isFocusable());

        // In device pixels: the label as wide as its text in layout pixels
        // shows all of it at scale 2 too, not a part and an ellipsis.
        const auto device = [scale](const CRect& r) {
            return CRect{r.x * scale, r.y * scale, r.width * scale, r.height * scale};
        };
        const auto [leftStart, leftEnd] =
            inkColumns(test, device(left->toFrame(left->getClientRect())), style.windowBackground);
        const auto [rightStart, rightEnd] =
            inkColumns(test, device(right->toFrame(right->getClientRect())), style.windowBackground);
        EXPECT_LT(leftStart, (12 + 3) * scale);
        EXPECT_GT(rightEnd, (400 - 12 - 4) * scale);
        EXPECT_NEAR(leftEnd - leftStart, rightEnd - rightStart, scale);
        inkWidth[scale - 1] = leftEnd - leftStart;
    }
    EXPECT_NEAR(inkWidth[1], 2 * inkWidth[0], 3);
}

TEST(TextArea, WrapsAtItsWidthAndIsAsHighAsTheWrappedText)
{
    const CStyle& style = CStyle::get();
    tbtest::GuiTestFrame test(400, 400);
    auto area = make<CTextArea>(kLongText);
    test.add(area, {.horzGrow = 1});
    // The first pass tells the area its width, the second gives it the height for it.
    test.render();
    test.render();
    const int lineHeight = style.font->getLineHeight();
    const int wide = area->getBounds().height;
    EXPECT_EQ(area->getBounds().width, 400 - 24);
    EXPECT_EQ(wide, area->getHeightForWidth(400 - 24));
    EXPECT_GE(wide, 3 * lineHeight);
    // The text fills it down to the last line.
    const CRect rect = area->toFrame(area->getClientRect());
    EXPECT_GT(lastInkRow(test, rect, style.windowBackground), rect.bottom() - lineHeight);

    test.frame().setBounds({0, 0, 220, 400});
    test.render();
    test.render();
    EXPECT_EQ(area->getBounds().width, 220 - 24);
    EXPECT_EQ(area->getBounds().height, area->getHeightForWidth(220 - 24));
    EXPECT_GT(area->getBounds().height, wide + lineHeight);

    // Short of room it shows the lines that fit and nothing of the next one.
    test.frame().setBounds({0, 0, 220, 24 + lineHeight * 5 / 2});
    test.render();
    test.render();
    const CRect shortRect = area->toFrame(area->getClientRect());
    EXPECT_EQ(shortRect.height, lineHeight * 5 / 2);
    const int lastRow = lastInkRow(test, shortRect, style.windowBackground);
    EXPECT_GT(lastRow, shortRect.y + lineHeight);
    EXPECT_LT(lastRow, shortRect.y + 2 * lineHeight);
}

TEST(ImageWidgets, TheDisplayFitsTheImageAndTheButtonClicks)
{
    const CStyle& style = CStyle::get();
    const CColor red{220, 30, 30};
    const CColor blue{30, 30, 220};
    tbtest::GuiTestFrame test(400, 300);
    auto recorder = make<Recorder>();
    auto image = basictest::solidImage({40, 20}, red, blue);
    auto button = make<CImageButton>(image);
    auto off = make<CImageButton>(image);
    off->setEnabled(false);
    auto display = make<CImageDisplay>(image);
    button->addListener(recorder.get());
    off->addListener(recorder.get());
    test.add(button);
    test.add(off);
    test.add(display, {.horzGrow = 1, .vertGrow = 1});
    test.render();

    // The button is the image and its padding, and does not grow.
    const CSize size = button->getSize(SizeType::preferred);
    EXPECT_EQ(button->getSize(SizeType::max), size);
    EXPECT_EQ(button->getBounds().size(), size);
    test.frame().injectClick(test.centreOf(*button));
    test.frame().injectClick(test.centreOf(*off));
    EXPECT_EQ(recorder->count(button.get(), Notification::clicked), 1);
    EXPECT_EQ(recorder->count(off.get(), Notification::clicked), 0);
    EXPECT_TRUE(button->hasFocus());
    test.frame().injectKey({Key::enter}, true);
    EXPECT_EQ(recorder->count(button.get(), Notification::clicked), 2);

    // Flat at rest, a hover background under the pointer; the image in the middle.
    const CRect buttonRect = button->toFrame(button->getClientRect());
    const CPoint corner{buttonRect.x + 3, buttonRect.y + buttonRect.height / 2};
    test.frame().injectMouseMove(test.centreOf(*button));
    test.render();
    EXPECT_EQ(test.pixel(corner.x, corner.y), style.controlHover);
    EXPECT_EQ(test.pixel(buttonRect.x + buttonRect.width / 2 - 5, corner.y), red);
    EXPECT_EQ(test.pixel(buttonRect.x + buttonRect.width / 2 + 5, corner.y), blue);
    test.frame().injectMouseLeft();
    test.render();
    EXPECT_EQ(test.pixel(corner.x, corner.y), style.windowBackground);
    EXPECT_NE(test.pixel(test.centreOf(*off).x - 5, test.centreOf(*off).y), red);

    // The display keeps the 2:1 image's shape and centres it.
    const CRect shown = display->getImageRect();
    const CRect client = display->getClientRect();
    EXPECT_EQ(shown.width, client.width);
    EXPECT_NEAR(shown.height * 2, shown.width, 2);
    EXPECT_NEAR(shown.y, client.height - shown.bottom(), 1);
    const CRect frameShown = display->toFrame(shown);
    EXPECT_EQ(test.pixel(frameShown.x + 2, frameShown.y + frameShown.height / 2), red);
    EXPECT_EQ(test.pixel(frameShown.right() - 3, frameShown.y + frameShown.height / 2), blue);
    EXPECT_EQ(test.pixel(frameShown.x + 2, frameShown.y - 3), style.windowBackground);
    EXPECT_EQ(fitCentred({10, 40}, {0, 0, 100, 100}), (CRect{37, 0, 25, 100}));
}

TEST(Canvas, ADoubleBufferedCanvasDrawsOnceUntilRedrawn)
{
    const CColor green{40, 160, 60};
    const CColor black{0, 0, 0};
    int drawings[2] = {};
    const auto counting = [&](int& counter) {
        return make<CCanvas>([&counter, green, black](CPainter& painter, CSize size) {
            ++counter;
            painter.fillRect({0, 0, size.width, size.height}, green);
            painter.drawLine({10, 0}, {10, size.height}, black);
        });
    };
    tbtest::GuiTestFrame test(300, 200, 2.0);
    auto plain = counting(drawings[0]);
    auto buffered = counting(drawings[1]);
    buffered->setDoubleBuffered(true);
    test.add(plain, {.horzGrow = 1, .vertGrow = 1});
    test.add(buffered, {.horzGrow = 1, .vertGrow = 1});
    test.render();
    EXPECT_EQ(drawings[0], 1);
    EXPECT_EQ(drawings[1], 1);

    // A repaint from outside copies the kept drawing, to the device pixel.
    test.frame().invalidate();
    test.render();
    EXPECT_EQ(drawings[0], 2);
    EXPECT_EQ(drawings[1], 1);
    const CRect rect = buffered->toFrame(buffered->getClientRect());
    const int y = (rect.y + rect.height / 2) * 2;
    EXPECT_EQ(test.pixel(rect.x * 2 + 19, y), green);
    EXPECT_EQ(test.pixel(rect.x * 2 + 20, y), black);
    EXPECT_EQ(test.pixel(rect.x * 2 + 22, y), green);

    // Asked to, or at a new size, it draws again.
    buffered->redraw();
    test.render();
    EXPECT_EQ(drawings[1], 2);
    test.frame().setBounds({0, 0, 320, 200});
    test.render();
    EXPECT_EQ(drawings[1], 3);
}

}  // namespace

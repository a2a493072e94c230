#include <gtest/gtest.h>

#include <cmath>

#include "gui/CStyle.h"
#include "gui/widgets/CProgressBar.h"
#include "gui/widgets/CSliderBar.h"
#include "tests/gui/basic/BasicWidgetTests.h"
#include "tests/support/gui/GuiTestFrame.h"

namespace {

using namespace fenn::gui;
using basictest::Recorder;
using fenn::make;
using fenn::P;

// The thumb's diameter, which the thumb's centre travels less than the slider's length.
constexpr int kThumb = 18;

// The frame point over a horizontal slider where the thumb's centre is for
// position, on the thumb's middle line.
CPoint pointFor(const CSliderBar& slider, double position)
{
    const CRect frame = slider.toFrame(slider.getClientRect());
    const double travel = frame.width - kThumb;
    const CRect thumb = slider.toFrame(slider.getThumbRect());
    return {frame.x + static_cast<int>(std::lround(kThumb / 2.0 + travel * position / slider.getMaxPosition())),
            thumb.y + thumb.height / 2};
}

TEST(SliderBar, DraggingHoldsTheCaptureAndSnapsToSteps)
{
    tbtest::GuiTestFrame test(400, 200);
    auto recorder = make<Recorder>();
    auto slider = make<CSliderBar>();
    slider->setMaxPosition(100);
    slider->setStepSize(10);
    slider->addListener(recorder.get());
    test.add(slider, {.horzGrow = 1});
    test.render();
    EXPECT_EQ(slider->getSize(SizeType::max).height, slider->getSize(SizeType::preferred).height);

    // Taken a few pixels off the thumb's centre: the grab point stays under the pointer.
    const CPoint grab = pointFor(*slider, 0);
    test.frame().injectMouseMove({grab.x + 3, grab.y});
    test.frame().injectMouseButton({grab.x + 3, grab.y}, MouseButton::left, true);
    EXPECT_TRUE(slider->isDragging());
    EXPECT_EQ(test.frame().getCaptureWindow(), slider.get());

    const CPoint at43 = pointFor(*slider, 43);
    test.frame().injectMouseMove({at43.x + 3, at43.y});
    EXPECT_EQ(slider->getPosition(), 40);
    // Far below the slider the drag goes on along the slider.
    const CPoint at78 = pointFor(*slider, 78);
    test.frame().injectMouseMove({at78.x + 3, 190});
    EXPECT_EQ(slider->getPosition(), 80);
    test.frame().injectMouseMove({at78.x + 5, 190});
    test.frame().injectMouseMove({399, 190});
    EXPECT_EQ(slider->getPosition(), 100);
    test.frame().injectMouseButton({399, 190}, MouseButton::left, false);
    EXPECT_FALSE(slider->isDragging());
    EXPECT_EQ(test.frame().getCaptureWindow(), nullptr);
    test.frame().injectMouseMove(pointFor(*slider, 10));
    EXPECT_EQ(slider->getPosition(), 100);

    // One notification per new position, each with the position.
    EXPECT_EQ(recorder->count(slider.get(), Notification::changed), 3);
    EXPECT_EQ(recorder->lastIndex(slider.get(), Notification::changed), 100);
    slider->setPosition(57);
    EXPECT_EQ(slider->getPosition(), 60);
    EXPECT_EQ(recorder->count(slider.get(), Notification::changed), 3);
    // The thumb is drawn where the position says.
    test.render();
    const CPoint thumb = pointFor(*slider, 60);
    EXPECT_EQ(test.pixel(thumb.x, thumb.y), CStyle::get().accent);
}

TEST(SliderBar, KeysAndTrackPressesMoveByStepsAndPages)
{
    tbtest::GuiTestFrame test(400, 300);
    auto recorder = make<Recorder>();
    auto slider = make<CSliderBar>();
    slider->setMaxPosition(200);
    slider->setStepSize(5);
    slider->setTickMarkDelta(50);
    slider->addListener(recorder.get());
    test.add(slider, {.horzGrow = 1});
    test.render();
    EXPECT_EQ(slider->getPageSize(), 20);
    slider->setPosition(23);
    EXPECT_EQ(slider->getPosition(), 25);

    slider->setFocus();
    const struct
    {
        Key key;
        int expected;
    } presses[] = {{Key::right, 30},    {Key::up, 35},   {Key::left, 30},   {Key::pageUp, 50},
                   {Key::pageDown, 30}, {Key::end, 200}, {Key::right, 200}, {Key::home, 0}};
    for (const auto& press : presses) {
        test.frame().injectKey({press.key}, true);
        EXPECT_EQ(slider->getPosition(), press.expected);
    }
    EXPECT_EQ(recorder->count(slider.get(), Notification::changed), 7);

    // A press on the track moves a page toward it, and stops at the press.
    test.frame().injectClick(pointFor(*slider, 150));
    EXPECT_EQ(slider->getPosition(), 20);
    test.frame().injectClick(pointFor(*slider, 150));
    EXPECT_EQ(slider->getPosition(), 40);
    test.frame().injectClick(pointFor(*slider, 52));
    EXPECT_EQ(slider->getPosition(), 50);
    test.frame().injectClick(pointFor(*slider, 5));
    EXPECT_EQ(slider->getPosition(), 30);

    // A maximum that is no multiple of the step stays reachable.
    slider->setMaxPosition(52);
    EXPECT_EQ(slider->getPosition(), 30);
    test.frame().injectKey({Key::end}, true);
    EXPECT_EQ(slider->getPosition(), 52);
    test.frame().injectKey({Key::left}, true);
    EXPECT_EQ(slider->getPosition(), 45);

    // Vertical sliders rise: 0 at the bottom, Up goes up.
    slider->setOrientation(Orientation::vertical);
    slider->setPosition(0);
    test.render();
    EXPECT_GT(slider->getBounds().height, slider->getBounds().width);
    EXPECT_GT(slider->getThumbRect().y, slider->getBounds().height / 2);
    test.frame().injectKey({Key::up}, true);
    EXPECT_EQ(slider->getPosition(), 5);
    const CRect frameRect = slider->toFrame(slider->getClientRect());
    test.frame().injectClick({test.centreOf(*slider).x - 4, frameRect.y + kThumb / 2});
    EXPECT_EQ(slider->getPosition(), 10);
}

TEST(ProgressBar, FillsInProportionToThePosition)
{
    const CStyle& style = CStyle::get();
    tbtest::GuiTestFrame test(400, 120);
    auto bar = make<CProgressBar>();
    bar->setMaximum(200);
    bar->setPosition(50);
    test.add(bar, {.horzGrow = 1});
    test.render();
    EXPECT_EQ(bar->getSize(SizeType::max).height, bar->getSize(SizeType::preferred).height);
    const CRect rect = bar->toFrame(bar->getClientRect());
    const auto at = [&](double fraction, int y) {
        return test.pixel(rect.x + static_cast<int>(rect.width * fraction), y);
    };
    const int middle = rect.y + rect.height / 2;
    EXPECT_EQ(at(0.20, middle), style.accent);
    EXPECT_EQ(at(0.30, middle), style.controlPressed);
    bar->setPosition(150);
    test.render();
    EXPECT_EQ(at(0.70, middle), style.accent);
    EXPECT_EQ(at(0.80, middle), style.controlPressed);
    bar->setPosition(500);
    EXPECT_EQ(bar->getPosition(), 200);

    // The bar's height follows the factor; the rest of the height stays background.
    bar->setPosition(50);
    test.render();
    EXPECT_EQ(at(0.20, rect.y + 2), style.windowBackground);
    bar->setBarHeightFactor(1.0);
    test.render();
    EXPECT_EQ(at(0.20, rect.y + 2), style.accent);
    EXPECT_EQ(at(0.80, rect.y + 2), style.controlPressed);
    bar->setEnabled(false);
    test.render();
    EXPECT_NE(at(0.20, middle), style.accent);
}

}  // namespace

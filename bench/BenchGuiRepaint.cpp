// What painting the GUI costs: a full repaint of a 1024x768 frame off
// screen holding a typical main window (a 10,000-row cell view with icons'
// room, texts and a button column, a split panel with a scroll panel of
// buttons and a second list, a row of buttons), and one scroll step of the
// cell view. Targets: a full repaint under 8 ms; a scroll step repaints the
// cell view's rows and nothing else. Counters: "repaintedPx" is the area a
// step repainted in device pixels, "ofFrame" that area as a share of the frame.
#include <benchmark/benchmark.h>

#include "gui/CFrameWindow.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CCellViewModel.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSplitPanel.h"

namespace {

using namespace fenn::gui;
using fenn::make;
using fenn::P;
using fenn::String;

constexpr int kRows = 10000;

// Texts worked out per cell, as an application's file list would.
class TrackModel : public CCellViewModelBase
{
public:
    int getRowCount() const override { return kRows; }
    String getCellText(int row, int column) const override
    {
        switch (column) {
        case 0:
            return String("Track ") + fenn::fromInt(row + 1) + " - A song title of some length";
        case 1:
            return String("Artist ") + fenn::fromInt(row % 97);
        case 2:
            return fenn::fromInt(row % 7 + 2) + ":" + fenn::fromInt(10 + row % 50);
        default:
            return "Play";
        }
    }
};

struct MainWindow
{
    P<CFrameWindow> frame = make<CFrameWindow>();
    P<CCellView> list = make<CCellView>();

    MainWindow()
    {
        frame->setBounds({0, 0, 1024, 768});
        auto layout = make<CGrowLayout>(Orientation::vertical);
        layout->setSpacing(8);
        layout->setMargins(12, 12, 12, 12);
        frame->setLayout(layout);

        list->addColumn("Title", 300);
        list->addColumn("Artist", 160);
        list->addColumn("Length", 70);
        list->setColumnAlign(2, TextAlign::right);
        list->addColumn("", 80, CellKind::button);
        list->setModel(make<TrackModel>());
        list->setSelectionMode(SelectionMode::multiple);
        list->select(3);
        list->select(8, SelectAction::extend);

        auto buttons = make<CWindow>();
        auto buttonLayout = make<CGrowLayout>(Orientation::vertical);
        buttonLayout->setSpacing(8);
        buttonLayout->setMargins(8, 8, 8, 8);
        for (int i = 0; i < 20; ++i) {
            auto button = make<CButton>(String("Action ") + fenn::fromInt(i));
            buttons->addChild(button);
            buttonLayout->addItem(button, {.horzGrow = 1});
        }
        buttons->setLayout(buttonLayout);
        auto panel = make<CScrollPanel>();
        panel->setContent(buttons);

        auto side = make<CCellView>();
        side->addColumn("Folder", 180);
        side->setModel(make<TrackModel>());
        auto right = make<CSplitPanel>(Orientation::vertical);
        right->setPanes(panel, side);
        right->setDividerPosition(300);
        auto split = make<CSplitPanel>(Orientation::horizontal);
        split->setPanes(list, right);
        split->setDividerPosition(700);
        frame->addChild(split);
        layout->addItem(split, {.horzGrow = 1, .vertGrow = 1});

        auto row = make<CGrowLayout>(Orientation::horizontal);
        row->setSpacing(8);
        for (const char* text : {"Add files", "Remove", "Convert", "Settings"}) {
            auto button = make<CButton>(text);
            frame->addChild(button);
            row->addItem(button, {});
        }
        layout->addItem(row, {});
        frame->show();
        frame->updateAndPaint();
        list->setFocus();
    }
};

int area(const std::vector<CRect>& rects)
{
    int total = 0;
    for (const CRect& rect : rects) total += rect.width * rect.height;
    return total;
}

void fullRepaint(benchmark::State& state)
{
    MainWindow window;
    for (auto _ : state) {
        window.frame->invalidate();
        benchmark::DoNotOptimize(window.frame->updateAndPaint());
    }
}

void scrollOneRow(benchmark::State& state)
{
    MainWindow window;
    int repainted = 0;
    int step = 1;
    for (auto _ : state) {
        // Down a row each time, turning back at the end of the list.
        const int before = window.list->getScrollPosition();
        window.list->setScrollPosition(before + step * window.list->getRowHeight());
        if (window.list->getScrollPosition() == before) {
            step = -step;
            window.list->setScrollPosition(before + step * window.list->getRowHeight());
        }
        repainted = area(window.frame->updateAndPaint());
    }
    state.counters["repaintedPx"] = repainted;
    state.counters["ofFrame"] = static_cast<double>(repainted) / (1024.0 * 768.0);
}

}  // namespace

BENCHMARK(fullRepaint)->Unit(benchmark::kMillisecond);
BENCHMARK(scrollOneRow)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();

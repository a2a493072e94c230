#include "tests/gui/gallery/Gallery.h"

#include <cairo.h>

#include <cmath>

#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/image/CImage.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/widgets/CButton.h"
#include "gui/widgets/CCanvas.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CCellViewModel.h"
#include "gui/widgets/CCheckBox.h"
#include "gui/widgets/CDropList.h"
#include "gui/widgets/CEditArea.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/CMenuBar.h"
#include "gui/widgets/CImageButton.h"
#include "gui/widgets/CImageDisplay.h"
#include "gui/widgets/CProgressBar.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSelectField.h"
#include "gui/widgets/CSelectGroup.h"
#include "gui/widgets/CSliderBar.h"
#include "gui/widgets/CSplitPanel.h"
#include "gui/widgets/CTabView.h"
#include "gui/widgets/CTextArea.h"
#include "gui/widgets/CTextField.h"

namespace tbtest {

using namespace fenn::gui;
using fenn::make;
using fenn::P;
using fenn::String;

namespace {

// A window holding a layout of its own, added to a parent layout.
P<CWindow> group(const P<CWindow>& parent, Orientation orientation, int spacing, const CLayoutParams& params = {})
{
    auto window = make<CWindow>();
    auto layout = make<CGrowLayout>(orientation);
    layout->setSpacing(spacing);
    window->setLayout(layout);
    parent->addChild(window);
    parent->getLayout()->addItem(window, params);
    return window;
}

template <class T> P<T> add(const P<CWindow>& parent, const P<T>& window, const CLayoutParams& params = {})
{
    parent->addChild(window);
    parent->getLayout()->addItem(window, params);
    return window;
}

void heading(const P<CWindow>& parent, const char* text)
{
    auto label = make<CTextField>(text);
    label->setFont(CStyle::get().boldFont->withPixelSize(15));
    add(parent, label, {.horzGrow = 1});
}

// A card: a white panel with a rounded border, holding a column.
class CCard : public CWindow
{
public:
    void paint(CPainter& painter) override
    {
        const CStyle& style = CStyle::get();
        painter.drawShadow(getClientRect().inset(2, 2, 2, 4), 10, 4, style.shadow);
        painter.fillRoundedRect(getClientRect().inset(1, 1, 1, 3), 10, style.panelBackground);
        painter.strokeRoundedRect(getClientRect().inset(1, 1, 1, 3), 10, style.border);
    }
};

P<CWindow> card(const P<CWindow>& parent, const char* title)
{
    auto made = make<CCard>();
    auto layout = make<CGrowLayout>(Orientation::vertical);
    layout->setSpacing(10);
    made->setLayout(layout);
    made->setLayoutMargins(16, 14, 16, 18);
    parent->addChild(made);
    parent->getLayout()->addItem(made, {.horzGrow = 1, .vertGrow = 1});
    heading(made, title);
    return made;
}

// A play symbol on an accent disc, drawn with cairo.
P<IImage> playImage(int size)
{
    auto image = make<CImage>(CSize{size, size});
    cairo_t* cr = cairo_create(image->getSurface());
    const CColor accent = CStyle::get().accent;
    cairo_set_source_rgb(cr, accent.red() / 255.0, accent.green() / 255.0, accent.blue() / 255.0);
    cairo_arc(cr, size / 2.0, size / 2.0, size / 2.0 - 1, 0, 2 * M_PI);
    cairo_fill(cr);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_move_to(cr, size * 0.40, size * 0.30);
    cairo_line_to(cr, size * 0.72, size * 0.50);
    cairo_line_to(cr, size * 0.40, size * 0.70);
    cairo_close_path(cr);
    cairo_fill(cr);
    cairo_destroy(cr);
    image->markDirty();
    return image;
}

void paintWave(CPainter& painter, CSize size)
{
    const CStyle& style = CStyle::get();
    painter.fillRoundedRect({0, 0, size.width, size.height}, 6, CColor(24, 28, 36));
    cairo_t* cr = painter.getCairo();
    cairo_set_source_rgba(cr, style.accent.red() / 255.0, 0.7, 1.0, 0.9);
    cairo_set_line_width(cr, 1.0);
    const double middle = size.height / 2.0;
    for (int x = 0; x < size.width; ++x) {
        const double t = x / 18.0;
        const double level = (0.35 + 0.3 * std::sin(t * 0.31)) * std::fabs(std::sin(t)) * middle;
        cairo_move_to(cr, x + 0.5, middle - level);
        cairo_line_to(cr, x + 0.5, middle + level);
    }
    cairo_stroke(cr);
}

void buildChoices(const P<CWindow>& column)
{
    auto buttons = card(column, "Buttons and choices");
    auto row = group(buttons, Orientation::horizontal, 8);
    auto primary = add(row, make<CButton>("Convert"));
    primary->setKind(ButtonKind::primary);
    add(row, make<CButton>("Cancel"));
    auto disabled = add(row, make<CButton>("Disabled"));
    disabled->setEnabled(false);
    auto checked = add(buttons, make<CCheckBox>("Normalise volume"));
    checked->setChecked(true);
    add(buttons, make<CCheckBox>("Keep the original files"));
    auto off = add(buttons, make<CCheckBox>("Write a cue sheet (not available)"));
    off->setEnabled(false);
    auto choices = add(buttons, make<CSelectGroup>());
    choices->addField("Keep the quality");
    choices->addField("CD quality");
    choices->addField("Smallest files");
    choices->setSelectedIndex(1);
    auto formats = add(buttons, make<CDropList>(), {.horzGrow = 1});
    for (const char* name : {"MP3", "Ogg Vorbis", "FLAC", "WAV", "WMA"}) formats->addEntry(name);
    formats->setSelectedIndex(2);
    formats->setToolTipText("The format of the converted files");
    auto editable = add(buttons, make<CDropList>(), {.horzGrow = 1});
    editable->setEditable(true);
    for (const char* pattern : {"%ARTIST% - %TITLE%", "%TRACK% %TITLE%"}) editable->addEntry(pattern);
    editable->setSelectedIndex(0);
    auto disabledList = add(buttons, make<CDropList>(), {.horzGrow = 1});
    disabledList->addEntry("Disabled drop list");
    disabledList->setSelectedIndex(0);
    disabledList->setEnabled(false);
}

void buildText(const P<CWindow>& column)
{
    auto text = card(column, "Text");
    add(text, make<CTextField>("Artist"));
    auto artist = add(text, make<CEditField>("Quorrel Ensemble"), {.horzGrow = 1});
    artist->setId("artist");
    auto search = add(text, make<CEditField>(), {.horzGrow = 1});
    search->setPlaceholder("Search in the list");
    auto readOnly = add(text, make<CEditField>("/home/user/Music/album.flac"), {.horzGrow = 1});
    readOnly->setEditMode(EditMode::readOnly);
    auto disabled = add(text, make<CEditField>("Disabled field"), {.horzGrow = 1});
    disabled->setEnabled(false);
    add(text,
        make<CEditArea>("Liner notes\nRecorded live in one take, mixed at home and mastered for the "
                        "loudness of a quiet room."),
        {.horzGrow = 1, .vertGrow = 1});
    add(text,
        make<CTextArea>("A text area wraps its words at the width it is given and ends what does not fit "
                        "with an ellipsis, so long descriptions stay inside their panel."),
        {.horzGrow = 1});
}

void buildValues(const P<CWindow>& column)
{
    auto values = card(column, "Values, images and lists");
    auto progress = add(values, make<CProgressBar>(), {.horzGrow = 1});
    progress->setMaximum(100);
    progress->setPosition(65);
    auto slider = add(values, make<CSliderBar>(), {.horzGrow = 1});
    slider->setMaxPosition(100);
    slider->setTickMarkDelta(10);
    slider->setStepSize(5);
    slider->setPosition(40);
    auto images = group(values, Orientation::horizontal, 12, {.horzGrow = 1});
    add(images, make<CImageButton>(playImage(40)));
    add(images, make<CImageDisplay>(playImage(64)));
    add(images, make<CCanvas>(&paintWave), {.horzGrow = 1, .vertGrow = 1});

    auto tabs = add(values, make<CTabView>(), {.horzGrow = 1, .vertGrow = 1});
    auto list = make<CCellView>();
    list->addColumn("#", 40);
    list->addColumn("Title", 140);
    list->addColumn("Length", 76);
    list->addColumn("", 64, CellKind::button);
    auto model = make<CCellViewListModel>();
    for (int row = 0; row < 200; ++row) {
        model->addRow({fenn::fromInt(row + 1), String("Track number ") + fenn::fromInt(row + 1),
                       fenn::fromInt(2 + row % 5) + ":" + fenn::fromInt(10 + row % 50), "Play"});
    }
    list->setModel(model);
    list->setSelectionMode(SelectionMode::multiple);
    list->select(2);
    list->select(4, SelectAction::toggle);
    list->sortBy(1, SortOrder::ascending);
    list->setScrollPosition(0);
    tabs->addPage("Tracks", list);
    auto scroll = make<CScrollPanel>();
    scroll->setScrollDirections(ScrollDirections::both);
    auto content = make<CTextArea>(
        "A scroll panel shows a part of a larger window. Scroll with the wheel, the bars or the keys.");
    scroll->setContent(content);
    tabs->addPage("Notes", scroll);
    auto split = make<CSplitPanel>(Orientation::horizontal);
    split->setPanes(make<CTextArea>("Left pane"), make<CTextArea>("Right pane"));
    tabs->addPage("Split", split);
    tabs->setSelectedIndex(0);
}

P<CMenuBar> buildMenuBar()
{
    auto bar = make<CMenuBar>();
    bar->setId("menuBar");
    auto file = make<CMenu>();
    file->addItem("Add files...", [] {}, "Ctrl+O");
    file->addItem("Add folder...", [] {});
    auto recent = make<CMenu>();
    recent->addItem("Live at home.flac", [] {});
    recent->addItem("Rehearsal 3.wav", [] {});
    file->addSubmenu("Recent files", recent);
    file->addSeparator();
    const int save = file->addItem("Save list", [] {}, "Ctrl+S");
    file->setEnabled(save, false);
    file->addItem("Quit", [] {}, "Ctrl+Q");
    auto view = make<CMenu>();
    const int large = view->addItem("Large icons", [] {});
    view->setChecked(large, true);
    view->addItem("Details", [] {});
    auto help = make<CMenu>();
    help->addItem("Contents", [] {}, "F1");
    bar->addMenu("File", file);
    bar->addMenu("View", view);
    bar->addMenu("Help", help);
    return bar;
}

}  // namespace

P<CFrameWindow> buildGallery()
{
    auto frame = make<CFrameWindow>();
    frame->setText("Tonebench widget gallery");
    auto layout = make<CGrowLayout>(Orientation::vertical);
    frame->setLayout(layout);
    auto bar = buildMenuBar();
    frame->addChild(bar);
    layout->addItem(bar, {.horzGrow = 1});
    auto columns = group(frame, Orientation::horizontal, 16, {.horzGrow = 1, .vertGrow = 1});
    columns->setLayoutMargins(16, 16, 16, 16);
    for (void (*build)(const P<CWindow>&) : {&buildChoices, &buildText, &buildValues}) {
        auto column = group(columns, Orientation::vertical, 16, {.horzGrow = 1, .vertGrow = 1});
        build(column);
    }
    frame->setBounds({0, 0, 1120, 760});
    return frame;
}

}  // namespace tbtest

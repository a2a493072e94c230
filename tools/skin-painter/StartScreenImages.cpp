// The icons of the start screen (48 x 48) and the program's icon (64 x 64).
// One hand for all of them: two-pixel accent lines with round ends over
// shapes filled in the soft accent, drawn on a 48-pixel grid with four pixels
// of air at the edges.

#include <string>

#include "PaintKit.h"

namespace skinpainter {

namespace {

constexpr int kIconSize = 48;
constexpr double kLine = 2;
const Colour kInk = palette::accent;
const Colour kTint = palette::accentSoft;

// A shape filled in the tint and outlined in the ink.
void duotone(Painter& painter)
{
    painter.fill(kTint, true);
    painter.stroke(kInk, kLine);
}

void line(Painter& painter, std::string_view commands, double width = kLine)
{
    painter.path(commands);
    painter.stroke(kInk, width);
}

void disc(Painter& painter, double cx, double cy, double radius)
{
    painter.circle(cx, cy, radius);
    duotone(painter);
    painter.circle(cx, cy, radius * 0.28);
    painter.fill(palette::white, true);
    painter.stroke(kInk, kLine);
    // A highlight arc in the groove area.
    cairo_new_path(painter.cairo());
    cairo_arc(painter.cairo(), cx, cy, radius * 0.62, 3.6, 4.6);
    painter.stroke(kInk.withAlpha(0.55), 1.5);
}

void musicNote(Painter& painter, double x, double y, double scale)
{
    cairo_t* cairo = painter.cairo();
    cairo_save(cairo);
    cairo_translate(cairo, x, y);
    cairo_scale(cairo, scale, scale);
    painter.path("M 6 14 V 1 L 14 -1 V 12");
    painter.stroke(kInk, kLine / scale);
    painter.circle(3.5, 14, 3);
    painter.fill(kInk);
    painter.circle(11.5, 12, 3);
    painter.fill(kInk);
    cairo_restore(cairo);
}

// A small label at the lower right of a disc, outlined in white so it stands
// off the disc.
void badge(Painter& painter, std::string_view text)
{
    const Box box{19, 30, 27, 14};
    painter.roundedRect(box, 4);
    painter.stroke(palette::white, 3, true);
    painter.fill(kInk);
    painter.text(text, box, 9, FontWeight::bold, palette::white);
}

void waveBars(Painter& painter, double x, double centreY, const std::initializer_list<double>& heights, double step)
{
    std::string commands;
    for (double height : heights) {
        commands += "M " + std::to_string(x) + " " + std::to_string(centreY - height / 2) + " V " +
                    std::to_string(centreY + height / 2) + " ";
        x += step;
    }
    line(painter, commands);
}

void drawRip(Painter& painter)
{
    disc(painter, 19, 19, 15);
    line(painter, "M 37 22 V 40 M 31 34 L 37 40 L 43 34");
    line(painter, "M 8 43 H 44");
}

void drawBurn(Painter& painter)
{
    disc(painter, 19, 19, 15);
    painter.path("M 35 23 C 39 28 43 31 43 36 C 43 40.5 39.5 44 35 44 C 30.5 44 27 40.5 27 36 "
                 "C 27 32 30 30 31 26 C 33 28 34 29 35 23 Z");
    painter.stroke(palette::white, 4, true);
    painter.fill(kInk);
    painter.path("M 35 33 C 37 35 38 36.5 38 38.5 C 38 40.2 36.7 41.5 35 41.5 C 33.3 41.5 32 40.2 32 38.5 "
                 "C 32 36.5 33.5 35.5 35 33 Z");
    painter.fill(kTint);
}

void drawOrganize(Painter& painter)
{
    painter.path("M 5 13 C 5 10.8 6.8 9 9 9 H 18 L 22 13 H 39 C 41.2 13 43 14.8 43 17 V 37 "
                 "C 43 39.2 41.2 41 39 41 H 9 C 6.8 41 5 39.2 5 37 Z");
    duotone(painter);
    line(painter, "M 12 22 H 36 M 12 28 H 36 M 12 34 H 28");
}

void drawModify(Painter& painter)
{
    line(painter, "M 13 7 V 41 M 24 7 V 41 M 35 7 V 41");
    const double knobs[][2] = {{13, 29}, {24, 16}, {35, 33}};
    for (const auto& knob : knobs) {
        painter.circle(knob[0], knob[1], 4.5);
        painter.fill(palette::white, true);
        duotone(painter);
    }
}

void drawRecord(Painter& painter)
{
    painter.roundedRect({17, 5, 14, 25}, 7);
    duotone(painter);
    line(painter, "M 21 13 H 27 M 21 18 H 27");
    line(painter, "M 11 22 C 11 30 16.5 35 24 35 C 31.5 35 37 30 37 22 M 24 35 V 42 M 16 42 H 32");
}

void drawFindRepair(Painter& painter)
{
    painter.circle(20, 20, 13);
    duotone(painter);
    waveBars(painter, 13, 20, {4, 10, 6, 12, 4}, 3.5);
    line(painter, "M 30 30 L 41 41", 4.5);
}

void drawCoverEditor(Painter& painter)
{
    painter.roundedRect({5, 7, 38, 34}, 5);
    duotone(painter);
    painter.path("M 9 37 L 19 25 L 26 32 L 30 28 L 39 37 Z");
    painter.fill(kInk);
    painter.circle(32, 17, 3.5);
    painter.fill(kInk);
}

void drawConvert(Painter& painter)
{
    painter.circle(24, 24, 7);
    painter.fill(kTint);
    line(painter, "A 24 24 14 200 330 M 36 11 L 37 18 L 30 18.5");
    line(painter, "A 24 24 14 20 150 M 12 37 L 11 30 L 18 29.5");
}

void drawCutMerge(Painter& painter)
{
    painter.roundedRect({4, 14, 17, 20}, 4);
    duotone(painter);
    painter.roundedRect({27, 14, 17, 20}, 4);
    duotone(painter);
    waveBars(painter, 8.5, 24, {4, 10, 6}, 4);
    waveBars(painter, 31.5, 24, {8, 4, 10}, 4);
    const double dashes[] = {2.5, 3};
    cairo_set_dash(painter.cairo(), dashes, 2, 0);
    line(painter, "M 24 5 V 43", 1.5);
    cairo_set_dash(painter.cairo(), nullptr, 0, 0);
}

void drawNormalize(Painter& painter)
{
    const double dashes[] = {3, 3};
    cairo_set_dash(painter.cairo(), dashes, 2, 0);
    line(painter, "M 5 9 H 43 M 5 39 H 43", 1.5);
    cairo_set_dash(painter.cairo(), nullptr, 0, 0);
    const double heights[] = {12, 22, 30, 20, 14};
    double x = 10;
    for (double height : heights) {
        painter.roundedRect({x - 2, 24 - height / 2, 4, height}, 2);
        duotone(painter);
        x += 7;
    }
}

void drawFileTags(Painter& painter)
{
    painter.path("M 6 9 C 6 7.3 7.3 6 9 6 H 23 L 42 25 C 43.2 26.2 43.2 27.8 42 29 L 29 42 "
                 "C 27.8 43.2 26.2 43.2 25 42 L 6 23 Z");
    duotone(painter);
    painter.circle(15, 15, 3);
    painter.fill(palette::white, true);
    painter.stroke(kInk, kLine);
    line(painter, "M 22 27 L 29 20 M 26 31 L 33 24");
}

void drawBurnAudio(Painter& painter)
{
    disc(painter, 19, 19, 15);
    painter.circle(35, 35, 9.5);
    painter.stroke(palette::white, 3, true);
    painter.fill(kTint, true);
    painter.stroke(kInk, kLine);
    musicNote(painter, 29, 29.5, 0.7);
}

void drawBurnMixed(Painter& painter)
{
    disc(painter, 19, 19, 15);
    painter.path("M 27 25 H 37 L 43 31 V 44 H 27 Z");
    painter.stroke(palette::white, 4, true);
    painter.fill(palette::white, true);
    duotone(painter);
    musicNote(painter, 29.5, 31, 0.55);
}

void drawHelp(Painter& painter)
{
    painter.circle(24, 24, 18);
    duotone(painter);
    painter.text("?", {6, 6, 36, 36}, 22, FontWeight::bold, kInk);
}

void drawExit(Painter& painter)
{
    painter.path("M 26 13 V 8 C 26 6.9 25.1 6 24 6 H 9 C 7.9 6 7 6.9 7 8 V 40 C 7 41.1 7.9 42 9 42 H 24 "
                 "C 25.1 42 26 41.1 26 40 V 35");
    painter.stroke(kInk, kLine);
    painter.path("M 9 8 H 24 V 40 H 9 Z");
    painter.fill(kTint);
    line(painter, "M 17 24 H 42 M 35 17 L 42 24 L 35 31");
}

}  // namespace

void addStartScreenImages(ImageList& images)
{
    using Draw = void (*)(Painter&);
    const struct
    {
        const char* name;
        Draw draw;
    } icons[] = {{"rip", drawRip},
                 {"burn", drawBurn},
                 {"organize", drawOrganize},
                 {"modify", drawModify},
                 {"record", drawRecord},
                 {"findrepair", drawFindRepair},
                 {"covereditor", drawCoverEditor},
                 {"convert", drawConvert},
                 {"cutmerge", drawCutMerge},
                 {"normalize", drawNormalize},
                 {"filetags", drawFileTags},
                 {"burnaudio", drawBurnAudio},
                 {"burnmixed", drawBurnMixed},
                 {"help", drawHelp},
                 {"exit", drawExit}};
    for (const auto& icon : icons)
        images.push_back({std::string("images/start/") + icon.name, kIconSize, kIconSize, 1,
                          [draw = icon.draw](Painter& painter, int) { draw(painter); }});
    // The two compressed-audio discs differ only in their label.
    for (const char* format : {"mp3", "wma"}) {
        std::string label = format;
        for (char& letter : label)
            if (letter >= 'a' && letter <= 'z') letter = char(letter - 'a' + 'A');
        images.push_back(
            {std::string("images/start/burn") + format, kIconSize, kIconSize, 1, [label](Painter& painter, int) {
                 disc(painter, 19, 19, 15);
                 badge(painter, label);
             }});
    }

    images.push_back(
        {"images/app-icon", 64, 64, 1, [](Painter& painter, int) {
             const Box square{4, 4, 56, 56};
             painter.softShadow(square.moved(0, 1.5), 13, 4, palette::shadow.withAlpha(0.35));
             painter.roundedRect(square, 13);
             painter.fillVertical(square, palette::accent.mixedWith(palette::white, 0.15), palette::accentPressed);
             Box waves = square.inset(8, 14, 8, 14);
             drawWaves(painter, waves, palette::white, false);
             painter.text("3", square.inset(0, 0, 7, 5), 15, FontWeight::bold, palette::white, Align::end, Align::end);
         }});
}

}  // namespace skinpainter

#include "gui/dialogs/CPlacesList.h"

#include <algorithm>

#include "foundation/IStringLocalizer.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/GuiTexts.h"

namespace fenn::gui {

namespace {

// Room around the rows, the height of a heading and of a row, and the
// extra room above a heading that follows rows.
constexpr int kOuterPadding = 10;
constexpr int kHeadingHeight = 26;
constexpr int kRowHeight = 32;
constexpr int kGroupGap = 12;
constexpr int kIconSize = 16;
constexpr int kIconLeft = 10;
constexpr int kTextLeft = kIconLeft + kIconSize + 10;
constexpr int kPreferredWidth = 196;
constexpr int kMinWidth = 150;
// Headings are a little smaller than the rows' text.
constexpr double kHeadingPixelSize = 11.5;

String headingOf(PlaceGroup group)
{
    return localize(group == PlaceGroup::places ? texts::fileDialogPlaces : texts::fileDialogDevices);
}

}  // namespace

CPlacesList::CPlacesList()
{
    setFocusable(true);
    m_headingFont = CStyle::get().boldFont->withPixelSize(kHeadingPixelSize);
}

void CPlacesList::setPlaces(std::vector<CPlace> places)
{
    m_places = std::move(places);
    m_current = -1;
    m_hovered = -1;
    invalidateLayout();
    invalidate();
}

void CPlacesList::setCurrentFolder(const CURI& folder)
{
    int current = -1;
    for (std::size_t index = 0; index < m_places.size(); ++index) {
        if (m_places[index].folder == folder) {
            current = static_cast<int>(index);
            break;
        }
    }
    if (current == m_current) return;
    m_current = current;
    invalidate();
}

std::vector<int> CPlacesList::rowTops() const
{
    std::vector<int> tops;
    int y = kOuterPadding;
    for (std::size_t index = 0; index < m_places.size(); ++index) {
        if (index == 0 || m_places[index].group != m_places[index - 1].group) {
            if (index > 0) y += kGroupGap;
            y += kHeadingHeight;
        }
        tops.push_back(y);
        y += kRowHeight;
    }
    return tops;
}

int CPlacesList::contentHeight() const
{
    const std::vector<int> tops = rowTops();
    return (tops.empty() ? kOuterPadding : tops.back() + kRowHeight) + kOuterPadding;
}

CRect CPlacesList::getPlaceRect(int index) const
{
    if (index < 0 || index >= static_cast<int>(m_places.size())) return {};
    const int top = rowTops()[static_cast<std::size_t>(index)];
    return {kOuterPadding, top, std::max(0, getClientRect().width - 2 * kOuterPadding), kRowHeight};
}

int CPlacesList::placeAt(CPoint point) const
{
    for (int index = 0; index < static_cast<int>(m_places.size()); ++index) {
        if (getPlaceRect(index).contains(point)) return index;
    }
    return -1;
}

CSize CPlacesList::computeSize(SizeType type)
{
    switch (type) {
    case SizeType::min:
        return {kMinWidth, contentHeight()};
    case SizeType::preferred:
        return {kPreferredWidth, contentHeight()};
    case SizeType::max:
        return {kPreferredWidth, kUnboundedExtent};
    }
    return {};
}

void CPlacesList::paint(CPainter& painter)
{
    const CStyle& style = CStyle::get();
    const CRect area = getClientRect();
    // A shade darker than the dialog, with a line where the content starts.
    painter.fillRect(area, backColorOr(style.windowBackground.mixedWith(style.controlPressed, 0.45)));
    painter.fillRect({area.right() - 1, 0, 1, area.height}, style.border.mixedWith(style.windowBackground, 0.3));

    const std::vector<int> tops = rowTops();
    for (std::size_t index = 0; index < m_places.size(); ++index) {
        const CPlace& place = m_places[index];
        const int row = static_cast<int>(index);
        if (index == 0 || place.group != m_places[index - 1].group) {
            const CRect heading{kOuterPadding + kIconLeft, tops[index] - kHeadingHeight,
                                area.width - 2 * (kOuterPadding + kIconLeft), kHeadingHeight};
            painter.drawText(heading.inset(0, 4, 0, 0), headingOf(place.group), m_headingFont, style.textSecondary,
                             TextAlign::left, TextWrap::ellipsis);
        }
        const CRect rect = getPlaceRect(row);
        const bool current = row == m_current;
        if (current) {
            painter.fillRoundedRect(rect, style.cornerRadius, style.accentSoft);
        } else if (row == m_hovered && isEnabled()) {
            painter.fillRoundedRect(rect, style.cornerRadius, style.controlPressed.withAlpha(150));
        }
        const CColor iconColor = !isEnabled() ? style.textDisabled : current ? style.accent : style.textSecondary;
        const CColor textColor = !isEnabled() ? style.textDisabled : current ? style.accentPressed : style.text;
        paintFileIcon(painter.getCairo(), place.icon, rect.x + kIconLeft, rect.y + (rect.height - kIconSize) / 2.0,
                      kIconSize, iconColor);
        painter.drawText(rect.inset(kTextLeft, 0, 8, 0), place.name, current ? style.boldFont : getFont(), textColor,
                         TextAlign::left, TextWrap::ellipsis);
    }
}

void CPlacesList::setHovered(int index)
{
    if (index == m_hovered) return;
    invalidate(getPlaceRect(m_hovered));
    m_hovered = index;
    invalidate(getPlaceRect(m_hovered));
}

void CPlacesList::onMouseLeave()
{
    setHovered(-1);
}

bool CPlacesList::onMouseMove(const CMouseEvent& event)
{
    setHovered(placeAt(event.position));
    return true;
}

bool CPlacesList::onMouseDown(const CMouseEvent& event)
{
    return event.button == MouseButton::left && placeAt(event.position) >= 0;
}

void CPlacesList::onClick(const CMouseEvent& event)
{
    const int index = placeAt(event.position);
    if (index >= 0) notify({Notification::activated, index});
}

bool CPlacesList::onKeyDown(const CKeyEvent& event)
{
    if (m_places.empty() || event.modifiers != modifierNone) return false;
    const int last = static_cast<int>(m_places.size()) - 1;
    switch (event.key) {
    case Key::up:
        notify({Notification::activated, m_current < 0 ? last : std::max(0, m_current - 1)});
        return true;
    case Key::down:
        notify({Notification::activated, m_current < 0 ? 0 : std::min(last, m_current + 1)});
        return true;
    case Key::enter:
    case Key::space:
        if (m_current < 0) return false;
        notify({Notification::activated, m_current});
        return true;
    default:
        return false;
    }
}

}  // namespace fenn::gui

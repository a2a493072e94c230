#pragma once

#include <vector>

#include "foundation/CURI.h"
#include "gui/CWindow.h"
#include "gui/dialogs/CFileIcons.h"

namespace fenn::gui {

// The group a place is listed under.
enum class PlaceGroup {
    places,
    devices,
};

// One entry of the side column: a folder the user goes to often.
struct CPlace
{
    FileIcon icon = FileIcon::folder;
    String name;
    CURI folder;
    PlaceGroup group = PlaceGroup::places;
};

// The side column of the file dialog: the places under a "Places" heading
// and the mounted volumes under "Devices", each with its icon. The place
// whose folder is the dialog's current folder is marked. A click on a
// place, or Enter or Space on the marked one, tells listeners
// Notification::activated with the place's index; Up and Down go to the
// place above or below and tell the same. Owned by its parent window; GUI
// thread.
class CPlacesList : public CWindow
{
public:
    CPlacesList();

    // Places of the same group must follow one another.
    void setPlaces(std::vector<CPlace> places);
    const std::vector<CPlace>& getPlaces() const { return m_places; }
    // Marks the place of folder; none when no place has that folder.
    void setCurrentFolder(const CURI& folder);
    // The marked place, or -1.
    int getCurrentPlace() const { return m_current; }

    // The row of a place, in the list's coordinates; empty outside the places.
    CRect getPlaceRect(int index) const;
    // The place under point, or -1.
    int placeAt(CPoint point) const;

    // ---- CWindow ----
    CSize computeSize(SizeType type) override;
    void paint(CPainter& painter) override;
    void onMouseLeave() override;
    bool onMouseMove(const CMouseEvent& event) override;
    bool onMouseDown(const CMouseEvent& event) override;
    void onClick(const CMouseEvent& event) override;
    bool onKeyDown(const CKeyEvent& event) override;

private:
    // Where each place's row starts, after the headings above it.
    std::vector<int> rowTops() const;
    int contentHeight() const;
    void setHovered(int index);

    std::vector<CPlace> m_places;
    int m_current = -1;
    int m_hovered = -1;
    P<CFont> m_headingFont;
};

}  // namespace fenn::gui

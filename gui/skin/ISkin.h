#pragma once

#include <vector>

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/skin/ILayer.h"

namespace fenn::gui::skin {

// The states of each skin kind, as indices into its layer tables.
enum ButtonState : int { buttonNormal, buttonHover, buttonDown, buttonDisabled, buttonStateCount };

enum FieldState : int { fieldNormal, fieldHover, fieldDisabled, fieldStateCount };

// Check boxes and select fields.
enum ActiveFieldState : int {
    checkedNormal,
    checkedHover,
    checkedDisabled,
    checking,
    uncheckedNormal,
    uncheckedHover,
    uncheckedDisabled,
    unchecking,
    activeFieldStateCount
};

// The slider bar's background and each of its parts.
enum SliderBarState : int { sliderBarNormal, sliderBarHover, sliderBarDrag, sliderBarDisabled, sliderBarStateCount };

enum TabState : int {
    tabActiveNormal,
    tabActiveHover,
    tabInactiveNormal,
    tabInactiveHover,
    tabDisabled,
    tabStateCount
};

// The tab view's page background.
enum TabViewState : int { tabViewNormal, tabViewHover, tabViewDisabled, tabViewStateCount };

// A skin: for each of its N states the layers shown in it, and for each
// pair of states (from, to) the layers played in that transition. Parsed
// once, immutable, shared by every window that uses it. GUI thread.
class ISkin : public virtual IBase
{
public:
    virtual String getId() const = 0;
    // The element name that defined it ("buttonskin", "tabskin", "slider"...).
    virtual String getKind() const = 0;
    virtual int getStateCount() const = 0;
    virtual String getStateName(int state) const = 0;
    // The index of a state name (compared lower-cased), or -1.
    virtual int findState(const String& name) const = 0;
    virtual const LayerList& getStateLayers(int state) const = 0;
    virtual const LayerList& getTransitionLayers(int from, int to) const = 0;
    // What a change from one state to another shows first: the pair's
    // transition layers, or the new state's own layers when it has none.
    virtual const LayerList& getLayersForChange(int from, int to) const = 0;
    // Every layer once, in document order.
    virtual const LayerList& getAllLayers() const = 0;
    // The state a window moves to when a transition into state has played
    // ("checking" goes on to "checked_normal"); state itself for most.
    virtual int getFollowState(int state) const = 0;
    // The content margins ("objectpos"), or zero margins when absent.
    virtual SkinMargins getObjectPos() const = 0;
    virtual bool hasObjectPos() const = 0;
    virtual bool hasTextLayer() const = 0;
};

class IButtonSkin : public virtual ISkin
{
};

// Text fields and text areas.
class IFieldSkin : public virtual ISkin
{
};

// Check boxes and select fields: checked and unchecked states with the
// animated changes between them.
class IActiveFieldSkin : public virtual ISkin
{
};

class ICheckBoxSkin : public virtual IActiveFieldSkin
{
};

class ISelectFieldSkin : public virtual IActiveFieldSkin
{
};

// A slider bar: the skin itself is the background; the parts use the same
// states. A part the package leaves out is an empty skin (no layers).
class ISliderBarSkin : public virtual ISkin
{
public:
    virtual SkinMargins getSliderAreaMargins() const = 0;
    virtual SkinMargins getTickMarkAreaMargins() const = 0;
    virtual P<ISkin> getStaticFiller() const = 0;
    virtual P<ISkin> getScalingFiller() const = 0;
    virtual P<ISkin> getSlider() const = 0;
    virtual P<ISkin> getTickMark() const = 0;
};

// One tab of a tab view.
class ITabSkin : public virtual ISkin
{
public:
    // Padding around the tab's title.
    virtual SkinMargins getCoreMargins() const = 0;
    // How far the tab reaches over its neighbours and the page.
    virtual SkinMargins getOverlapMargins() const = 0;
};

enum class TabPlacement {
    top,
    bottom,
};

enum class TabAlign {
    left,
    center,
    right,
};

// A tab view: the skin itself is the page background (states normal,
// hover, disabled); the tabs have skins of their own.
class ITabViewSkin : public virtual ISkin
{
public:
    virtual TabPlacement getTabPlacement() const = 0;
    virtual TabAlign getTabAlign() const = 0;
    virtual SkinMargins getTabAreaMargins() const = 0;
    virtual SkinMargins getContentAreaMargins() const = 0;
    // The skin of tab index i: the tabids item min(i, n - 1). Never null.
    virtual P<ITabSkin> getTabSkin(int index) const = 0;
    virtual const std::vector<String>& getTabIds() const = 0;
};

}  // namespace fenn::gui::skin

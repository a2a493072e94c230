#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "gui/skin/ISkin.h"

namespace fenn::gui::skin {

// The state names of the kinds, in index order.
const std::vector<String>& buttonStateNames();
const std::vector<String>& fieldStateNames();
const std::vector<String>& activeFieldStateNames();
const std::vector<String>& sliderBarStateNames();
const std::vector<String>& tabStateNames();
const std::vector<String>& tabViewStateNames();

// A skin of any kind: the state names, the layers of each state and the
// N x N table of transition layers, indexed from * N + to. The package
// parser fills it (addLayer with the layer's states and transitions lists),
// after which it is immutable.
class CSkin : public CObject, public virtual ISkin
{
public:
    CSkin(String id, String kind, const std::vector<String>& stateNames);

    // Why a states or transitions list was refused.
    enum class BindResult {
        ok,
        badStates,
        badTransitions,
    };

    // Adds a layer bound to the states and transitions of two lists (either
    // may be empty, not both; the caller checks that). States: names or "*"
    // (every state); a state named twice, "*" after a name, or an unknown
    // name is refused. Transitions: "from-to" items whose sides are names
    // or "*" (every state); a pair bound twice or an item without "-" is
    // refused. A refused list leaves the skin without the layer.
    BindResult addLayer(const P<ILayer>& layer, const String& states, const String& transitions);
    // "checking" going on to "checked_normal" when its layers have played.
    void setFollowState(int state, int follow);
    void setObjectPos(const SkinMargins& margins);

    String getId() const override { return m_id; }
    String getKind() const override { return m_kind; }
    int getStateCount() const override { return static_cast<int>(m_stateNames.size()); }
    String getStateName(int state) const override;
    int findState(const String& name) const override;
    const LayerList& getStateLayers(int state) const override;
    const LayerList& getTransitionLayers(int from, int to) const override;
    const LayerList& getLayersForChange(int from, int to) const override;
    const LayerList& getAllLayers() const override { return m_allLayers; }
    int getFollowState(int state) const override;
    SkinMargins getObjectPos() const override { return m_objectPos; }
    bool hasObjectPos() const override { return m_hasObjectPos; }
    bool hasTextLayer() const override { return m_hasTextLayer; }

private:
    bool parseStates(const String& list, std::vector<int>& states) const;
    bool parseTransitions(const String& list, std::vector<std::pair<int, int>>& pairs) const;
    // -1 for "*", -2 for an unknown name.
    int stateIndex(const String& name) const;

    String m_id;
    String m_kind;
    std::vector<String> m_stateNames;
    std::vector<LayerList> m_stateLayers;
    std::vector<LayerList> m_transitionLayers;
    std::vector<int> m_follow;
    LayerList m_allLayers;
    SkinMargins m_objectPos;
    bool m_hasObjectPos = false;
    bool m_hasTextLayer = false;
};

class CButtonSkin : public CSkin, public virtual IButtonSkin
{
public:
    explicit CButtonSkin(String id) : CSkin(std::move(id), "buttonskin", buttonStateNames()) {}
};

class CFieldSkin : public CSkin, public virtual IFieldSkin
{
public:
    explicit CFieldSkin(String id) : CSkin(std::move(id), "fieldskin", fieldStateNames()) {}
};

// The checked/unchecked state machine shared by check boxes and select fields.
class CActiveFieldSkin : public CSkin, public virtual IActiveFieldSkin
{
public:
    CActiveFieldSkin(String id, String kind);
};

class CCheckBoxSkin : public CActiveFieldSkin, public virtual ICheckBoxSkin
{
public:
    explicit CCheckBoxSkin(String id) : CActiveFieldSkin(std::move(id), "checkboxskin") {}
};

class CSelectFieldSkin : public CActiveFieldSkin, public virtual ISelectFieldSkin
{
public:
    explicit CSelectFieldSkin(String id) : CActiveFieldSkin(std::move(id), "selectfieldskin") {}
};

class CSliderBarSkin : public CSkin, public virtual ISliderBarSkin
{
public:
    explicit CSliderBarSkin(String id);

    // The parts, empty until the parser fills them.
    const P<CSkin>& staticFiller() const { return m_staticFiller; }
    const P<CSkin>& scalingFiller() const { return m_scalingFiller; }
    const P<CSkin>& slider() const { return m_slider; }
    const P<CSkin>& tickMark() const { return m_tickMark; }
    void setSliderAreaMargins(const SkinMargins& margins) { m_sliderArea = margins; }
    void setTickMarkAreaMargins(const SkinMargins& margins) { m_tickMarkArea = margins; }

    SkinMargins getSliderAreaMargins() const override { return m_sliderArea; }
    SkinMargins getTickMarkAreaMargins() const override { return m_tickMarkArea; }
    P<ISkin> getStaticFiller() const override { return m_staticFiller; }
    P<ISkin> getScalingFiller() const override { return m_scalingFiller; }
    P<ISkin> getSlider() const override { return m_slider; }
    P<ISkin> getTickMark() const override { return m_tickMark; }

private:
    P<CSkin> m_staticFiller;
    P<CSkin> m_scalingFiller;
    P<CSkin> m_slider;
    P<CSkin> m_tickMark;
    SkinMargins m_sliderArea;
    SkinMargins m_tickMarkArea;
};

class CTabSkin : public CSkin, public virtual ITabSkin
{
public:
    explicit CTabSkin(String id) : CSkin(std::move(id), "tabskin", tabStateNames()) {}

    void setCoreMargins(const SkinMargins& margins) { m_core = margins; }
    void setOverlapMargins(const SkinMargins& margins) { m_overlap = margins; }
    SkinMargins getCoreMargins() const override { return m_core; }
    SkinMargins getOverlapMargins() const override { return m_overlap; }

private:
    SkinMargins m_core;
    SkinMargins m_overlap;
};

class CTabViewSkin : public CSkin, public virtual ITabViewSkin
{
public:
    explicit CTabViewSkin(String id) : CSkin(std::move(id), "tabviewskin", tabViewStateNames()) {}

    void setTabArea(TabPlacement placement, TabAlign align, std::vector<String> tabIds, const SkinMargins& margins);
    void setContentAreaMargins(const SkinMargins& margins) { m_contentArea = margins; }
    // Adds a tab skin; false when one with its id exists already.
    bool addTabSkin(const P<CTabSkin>& tab);
    // Checks that every tab id names a tab skin and that there is at least
    // one; returns the first id without a skin, or an empty text.
    String findMissingTabSkin() const;

    TabPlacement getTabPlacement() const override { return m_placement; }
    TabAlign getTabAlign() const override { return m_align; }
    SkinMargins getTabAreaMargins() const override { return m_tabArea; }
    SkinMargins getContentAreaMargins() const override { return m_contentArea; }
    P<ITabSkin> getTabSkin(int index) const override;
    const std::vector<String>& getTabIds() const override { return m_tabIds; }

private:
    P<CTabSkin> findTab(const String& id) const;

    TabPlacement m_placement = TabPlacement::top;
    TabAlign m_align = TabAlign::left;
    std::vector<String> m_tabIds;
    SkinMargins m_tabArea;
    SkinMargins m_contentArea;
    std::vector<P<CTabSkin>> m_tabs;
};

}  // namespace fenn::gui::skin

#include "gui/skin/CSkin.h"

#include <algorithm>

namespace fenn::gui::skin {

namespace {

const LayerList& emptyLayers()
{
    static const LayerList empty;
    return empty;
}

// Lists in skin files are trimmed of blanks, tabs and line ends only.
String trimItem(const String& text)
{
    const std::string bytes = text.toStdString();
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    std::size_t start = 0;
    std::size_t end = bytes.size();
    while (start < end && isSpace(bytes[start])) ++start;
    while (end > start && isSpace(bytes[end - 1])) --end;
    return String::copyOf(std::string_view(bytes).substr(start, end - start));
}

std::vector<String> splitList(const String& list)
{
    std::vector<String> items;
    for (const String& item : list.split(",")) items.push_back(trimItem(item));
    return items;
}

}  // namespace

const std::vector<String>& buttonStateNames()
{
    static const std::vector<String> names{"normal", "hover", "down", "disabled"};
    return names;
}

const std::vector<String>& fieldStateNames()
{
    static const std::vector<String> names{"normal", "hover", "disabled"};
    return names;
}

const std::vector<String>& activeFieldStateNames()
{
    static const std::vector<String> names{"checked_normal",   "checked_hover",   "checked_disabled",   "checking",
                                           "unchecked_normal", "unchecked_hover", "unchecked_disabled", "unchecking"};
    return names;
}

const std::vector<String>& sliderBarStateNames()
{
    static const std::vector<String> names{"normal", "hover", "drag", "disabled"};
    return names;
}

const std::vector<String>& tabStateNames()
{
    static const std::vector<String> names{"active_normal", "active_hover", "inactive_normal", "inactive_hover",
                                           "disabled"};
    return names;
}

const std::vector<String>& tabViewStateNames()
{
    static const std::vector<String> names{"normal", "hover", "disabled"};
    return names;
}

CSkin::CSkin(String id, String kind, const std::vector<String>& stateNames)
    : m_id(std::move(id)), m_kind(std::move(kind)), m_stateNames(stateNames), m_stateLayers(stateNames.size()),
      m_transitionLayers(stateNames.size() * stateNames.size()), m_follow(stateNames.size())
{
    for (std::size_t state = 0; state < m_follow.size(); ++state) m_follow[state] = static_cast<int>(state);
}

int CSkin::stateIndex(const String& name) const
{
    if (name == "*") return -1;
    const int found = findState(name);
    return found < 0 ? -2 : found;
}

bool CSkin::parseStates(const String& list, std::vector<int>& states) const
{
    std::vector<bool> seen(m_stateNames.size(), false);
    for (const String& item : splitList(list)) {
        const int index = stateIndex(item);
        if (index == -2) return false;
        if (index == -1) {
            for (std::size_t state = 0; state < seen.size(); ++state) {
                if (seen[state]) return false;
                seen[state] = true;
                states.push_back(static_cast<int>(state));
            }
            continue;
        }
        if (seen[static_cast<std::size_t>(index)]) return false;
        seen[static_cast<std::size_t>(index)] = true;
        states.push_back(index);
    }
    return true;
}

bool CSkin::parseTransitions(const String& list, std::vector<std::pair<int, int>>& pairs) const
{
    const int count = getStateCount();
    std::vector<bool> seen(static_cast<std::size_t>(count * count), false);
    for (const String& item : splitList(list)) {
        const std::string text = item.toStdString();
        const std::size_t dash = text.find('-');
        if (dash == std::string::npos) return false;
        const int from = stateIndex(trimItem(String::copyOf(text.substr(0, dash))));
        const int to = stateIndex(trimItem(String::copyOf(text.substr(dash + 1))));
        if (from == -2 || to == -2) return false;
        // "*" on a side stands for every state of that side.
        for (int f = (from < 0 ? 0 : from); f <= (from < 0 ? count - 1 : from); ++f) {
            for (int t = (to < 0 ? 0 : to); t <= (to < 0 ? count - 1 : to); ++t) {
                const std::size_t cell = static_cast<std::size_t>(f * count + t);
                if (seen[cell]) return false;
                seen[cell] = true;
                pairs.emplace_back(f, t);
            }
        }
    }
    return true;
}

CSkin::BindResult CSkin::addLayer(const P<ILayer>& layer, const String& states, const String& transitions)
{
    std::vector<int> stateList;
    if (!states.isEmpty() && !parseStates(states, stateList)) return BindResult::badStates;
    std::vector<std::pair<int, int>> pairs;
    if (!transitions.isEmpty() && !parseTransitions(transitions, pairs)) return BindResult::badTransitions;
    for (const int state : stateList) m_stateLayers[static_cast<std::size_t>(state)].push_back(layer);
    for (const auto& [from, to] : pairs)
        m_transitionLayers[static_cast<std::size_t>(from * getStateCount() + to)].push_back(layer);
    m_allLayers.push_back(layer);
    if (layer->isTextLayer()) m_hasTextLayer = true;
    return BindResult::ok;
}

void CSkin::setFollowState(int state, int follow)
{
    if (state >= 0 && state < getStateCount() && follow >= 0 && follow < getStateCount())
        m_follow[static_cast<std::size_t>(state)] = follow;
}

void CSkin::setObjectPos(const SkinMargins& margins)
{
    m_objectPos = margins;
    m_hasObjectPos = true;
}

String CSkin::getStateName(int state) const
{
    if (state < 0 || state >= getStateCount()) return String();
    return m_stateNames[static_cast<std::size_t>(state)];
}

int CSkin::findState(const String& name) const
{
    const String lower = name.toLowerCase();
    for (std::size_t state = 0; state < m_stateNames.size(); ++state) {
        if (m_stateNames[state] == lower) return static_cast<int>(state);
    }
    return -1;
}

const LayerList& CSkin::getStateLayers(int state) const
{
    if (state < 0 || state >= getStateCount()) return emptyLayers();
    return m_stateLayers[static_cast<std::size_t>(state)];
}

const LayerList& CSkin::getTransitionLayers(int from, int to) const
{
    const int count = getStateCount();
    if (from < 0 || from >= count || to < 0 || to >= count) return emptyLayers();
    return m_transitionLayers[static_cast<std::size_t>(from * count + to)];
}

const LayerList& CSkin::getLayersForChange(int from, int to) const
{
    const LayerList& transition = getTransitionLayers(from, to);
    return transition.empty() ? getStateLayers(to) : transition;
}

int CSkin::getFollowState(int state) const
{
    if (state < 0 || state >= getStateCount()) return state;
    return m_follow[static_cast<std::size_t>(state)];
}

CActiveFieldSkin::CActiveFieldSkin(String id, String kind)
    : CSkin(std::move(id), std::move(kind), activeFieldStateNames())
{
    setFollowState(checking, checkedNormal);
    setFollowState(unchecking, uncheckedNormal);
}

CSliderBarSkin::CSliderBarSkin(String id)
    : CSkin(id, "sliderbarskin", sliderBarStateNames()),
      m_staticFiller(make<CSkin>(id, "staticfiller", sliderBarStateNames())),
      m_scalingFiller(make<CSkin>(id, "scalingfiller", sliderBarStateNames())),
      m_slider(make<CSkin>(id, "slider", sliderBarStateNames())),
      m_tickMark(make<CSkin>(id, "tickmark", sliderBarStateNames()))
{
}

void CTabViewSkin::setTabArea(TabPlacement placement, TabAlign align, std::vector<String> tabIds,
                              const SkinMargins& margins)
{
    m_placement = placement;
    m_align = align;
    m_tabIds = std::move(tabIds);
    m_tabArea = margins;
}

bool CTabViewSkin::addTabSkin(const P<CTabSkin>& tab)
{
    if (findTab(tab->getId())) return false;
    m_tabs.push_back(tab);
    return true;
}

P<CTabSkin> CTabViewSkin::findTab(const String& id) const
{
    for (const P<CTabSkin>& tab : m_tabs) {
        if (tab->getId() == id) return tab;
    }
    return nullptr;
}

String CTabViewSkin::findMissingTabSkin() const
{
    for (const String& id : m_tabIds) {
        if (!findTab(id)) return id;
    }
    if (m_tabIds.empty() && m_tabs.empty()) return "tab";
    return String();
}

P<ITabSkin> CTabViewSkin::getTabSkin(int index) const
{
    if (!m_tabIds.empty()) {
        const std::size_t item = std::min(static_cast<std::size_t>(std::max(0, index)), m_tabIds.size() - 1);
        if (P<CTabSkin> tab = findTab(m_tabIds[item])) return tab;
    }
    if (!m_tabs.empty()) return m_tabs.front();
    static const P<CTabSkin> empty = make<CTabSkin>("tab");
    return empty;
}

}  // namespace fenn::gui::skin

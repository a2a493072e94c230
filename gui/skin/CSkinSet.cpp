#include "gui/skin/CSkinSet.h"

namespace fenn::gui::skin {

bool CSkinSet::addSkin(const P<ISkin>& skin)
{
    return m_skins.emplace(skin->getId().toStdString(), skin).second;
}

void CSkinSet::setDefaultSkinId(const String& widgetKind, const String& skinId)
{
    m_defaults[widgetKind.toLowerCase().toStdString()] = skinId;
}

P<ISkin> CSkinSet::getSkin(const String& id) const
{
    const auto found = m_skins.find(id.toStdString());
    return found == m_skins.end() ? nullptr : found->second;
}

String CSkinSet::getDefaultSkinId(const String& widgetKind) const
{
    const String kind = widgetKind.toLowerCase();
    const auto found = m_defaults.find(kind.toStdString());
    return found == m_defaults.end() ? kind : found->second;
}

}  // namespace fenn::gui::skin

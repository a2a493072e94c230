#include "gui/skin/CCoreFactories.h"

#include "gui/skin/CSkinManager.h"

namespace fenn::gui::skin {

P<ISkin> findCoreSkin(const char* widgetKind, const CValueList& parameters)
{
    const P<ISkinSet> set = CSkinManager::getInstance()->getSkinSet(parameters.getString("skinset", String()));
    if (!set) return nullptr;
    return set->getSkin(parameters.getString("skin", set->getDefaultSkinId(widgetKind)));
}

}  // namespace fenn::gui::skin

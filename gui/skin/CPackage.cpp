#include "gui/skin/CPackage.h"

#include "gui/skin/CSkinManager.h"
#include "gui/skin/CWindowSystem.h"

namespace fenn::gui::skin {

void CPackage::onStart()
{
    CWindowSystemRegistry::add(make<CWindowSystem>());
}

void CPackage::onStop()
{
    CWindowSystemRegistry::remove("skin");
    CSkinManager::getInstance()->clear();
}

}  // namespace fenn::gui::skin

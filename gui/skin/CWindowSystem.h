#pragma once

#include "gui/IWindowSystem.h"

namespace fenn::gui::skin {

// The "skin" window system: skinned core windows for the widget kinds a
// skin draws, and every other type (frames, cell views, edit fields...)
// made by the "default" system, found in the registry when asked (or made
// once when none is registered). A kind whose skin cannot be found is made
// by the default system too. GUI thread.
class CWindowSystem : public fenn::gui::CWindowSystem
{
public:
    CWindowSystem();

    bool hasType(const String& type) const override;
    using fenn::gui::CWindowSystem::createWindow;
    P<CWindow> createWindow(const String& type, CWindow* parent, const CValueList& parameters) override;

private:
    P<IWindowSystem> getDelegate() const;

    mutable P<IWindowSystem> m_ownDefault;
};

}  // namespace fenn::gui::skin

#pragma once

#include "foundation/CURI.h"
#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/IWindowSystem.h"
#include "gui/layout/ILayoutItem.h"

namespace fenn::gui {

// Builds windows and layout groups from XML layout files: the application
// loads its files once, then builds a top-level component of them by its id
// whenever it needs one (a dialog each time it opens). GUI thread only.
class IGUIBuilder : public virtual IBase
{
public:
    // The window system of components that name none; null falls back to
    // the registered system "default".
    virtual void setDefaultWindowSystem(const P<IWindowSystem>& system) = 0;
    virtual P<IWindowSystem> getDefaultWindowSystem() const = 0;
    // Parses the file (and every file it includes) and adds it to the files
    // whose top-level components build finds. Syntax errors and missing
    // includes throw here, not at the first build.
    virtual void loadFile(const CURI& uri) = 0;
    // Builds the first top-level component with the id (compared
    // case-sensitively) of the loaded files, in load order, into the parent
    // window and the parent layout group (either may be null where the
    // component allows it); throws CError (componentNotFound) when no file
    // has it.
    virtual P<ILayoutItem> build(const String& id, CWindow* parentWindow, ILayout* parentLayoutGroup) = 0;
    // Forgets the loaded files and every parsed document.
    virtual void clearDocuments() = 0;
};

}  // namespace fenn::gui

#pragma once

#include "gui/CFrameWindow.h"
#include "gui/IWindowSystem.h"
#include "gui/builder/CGUIBuilder.h"

namespace tbtest {

// The widget gallery, built from tests/gui/gallery/gallery.xml (and the
// pieces it includes) through the layout file builder: every widget of the
// toolkit in its states (normal, hovered, pressed, focused, disabled,
// checked, selected...). The test renders it to PNG; the gallery program
// shows it in a real window. The layout file is read through the stream
// manager, so disk streams must be registered.

// The URI of gallery.xml in the source tree.
fenn::CURI galleryLayoutURI();

// Builds the gallery's content ("galleryContent") into parent with the
// builder's default window system, then fills in what the layout file
// cannot say: the list's rows, the canvas's drawing, the images, the
// disabled and checked states, the bold headings.
fenn::P<fenn::gui::ILayoutItem> buildGalleryContent(fenn::gui::CGUIBuilder& builder, fenn::gui::CWindow& parent);

// Parses the shipped default skin (data/skin/default in the source tree)
// into the skin manager and makes it the current package, for the "skin"
// window system.
void loadDefaultSkin();

// The whole gallery frame, titled "Tonebench widget gallery", with a menu
// bar over the content, built with the window system given.
fenn::P<fenn::gui::CFrameWindow> buildGallery(const fenn::P<fenn::gui::IWindowSystem>& system);

}  // namespace tbtest

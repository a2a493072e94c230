#pragma once

#include "foundation/CValueList.h"
#include "gui/CWindow.h"

namespace fenn::gui::skin {

// The factories of the skinned windows, registered with the "skin" window
// system. Each finds its skin through the process's CSkinManager: the skin
// set from the parameter "skinset" (default: the manager's default set), the
// skin from "skin" (default: the set's skin for the widget kind), makes the
// core window, copies the parameters into its properties and adds it to the
// parent. Without a package, set or skin of the right kind they return null,
// and the window system makes the plain widget instead. A missing or
// frameless parent throws CError. GUI thread.
class CCoreButtonFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const;
};

class CCoreTextFieldFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const;
};

class CCoreTextAreaFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const;
};

class CCoreCheckBoxFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const;
};

class CCoreSelectFieldFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const;
};

class CCoreSliderBarFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const;
};

class CCoreTabViewFactory
{
public:
    P<CWindow> operator()(CWindow* parent, const CValueList& parameters) const;
};

}  // namespace fenn::gui::skin

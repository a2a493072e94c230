#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the skin engine, with their keys.
namespace fenn::gui::skin::texts {

inline constexpr TextKey xmlSyntaxError{"fenn.gui.skin.CSkinPackageBase.xmlSyntaxError",
                                        "XML syntax error in %FILE%, line %LINE%"};
inline constexpr TextKey xmlObjectDefinedTwice{
    "fenn.gui.skin.CSkinPackageBase.xmlObjectDefinedTwice",
    "XML error in %FILE%, line %LINE%: an object of type '%TYPE%' with the id '%ID%' has already been defined."};
inline constexpr TextKey xmlMissingElement{"fenn.gui.skin.CSkinPackageBase.xmlMissingElement",
                                           "XML error in %FILE%, line %LINE%: element %NAME% not defined"};
inline constexpr TextKey xmlMissingAttribute{"fenn.gui.skin.CSkinPackageBase.xmlMissingAttribute",
                                             "Missing XML attribute in %FILE%, line %LINE%, element %ELEMENT%: %NAME%"};
inline constexpr TextKey xmlInvalidAttribute{"fenn.gui.skin.CSkinPackageBase.xmlInvalidAttribute",
                                             "Invalid XML attribute in %FILE%, line %LINE%, element %ELEMENT%: %NAME%"};
inline constexpr TextKey xmlUnexpectedElement{"fenn.gui.skin.CSkinPackageBase.xmlUnexpectedElement",
                                              "Unexpected XML element in %FILE%, line %LINE%: %NAME%"};
inline constexpr TextKey xmlLayerMissingStateTrans{
    "fenn.gui.skin.CSkinPackage.xmlLayerMissingStateTrans",
    "XML error in %FILE%, line %LINE%: layers must be associated with states and/or transitions"};

inline constexpr TextKey outerWindowHasNoParent{
    "fenn.gui.skin.CCoreWindow.OuterWindowHasNoParent",
    "The outer window of a fenn.gui.skin.CCoreWindow must have a parent window."};
inline constexpr TextKey outerWindowHasNoVirtualWindowParent{
    "fenn.gui.skin.CCoreWindow.OuterWindowHasNoVirtualWindowParent",
    "The outer window of a fenn.gui.skin.CCoreWindow must have a parent window that supports the "
    "IVirtualWindowParent interface."};

}  // namespace fenn::gui::skin::texts

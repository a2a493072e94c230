#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the layout file builder, with their keys.
namespace fenn::gui::builder::texts {

inline constexpr TextKey xmlParseError{"fenn.gui.CGUIBuilder.XMLParseError",
                                       "XML Parse Error in file '%FILE%', line %LINE%."};
inline constexpr TextKey missingAttribute{
    "fenn.gui.CGUIBuilder.MissingAttribute",
    "Error parsing GUI file (file '%FILE%', line %LINE%). No attribute '%NAME%' was found."};
inline constexpr TextKey invalidAttribute{
    "fenn.gui.CGUIBuilder.InvalidAttribute",
    "Error parsing GUI file (file '%FILE%', line %LINE%). The attribute '%NAME%' has the invalid value '%VALUE%'."};
inline constexpr TextKey unexpectedElement{
    "fenn.gui.CGUIBuilder.UnexpectedElement",
    "Error parsing GUI file (file '%FILE%', line %LINE%). The element '%NAME%' cannot stand here."};
inline constexpr TextKey includeCycle{"fenn.gui.CGUIBuilder.IncludeCycle",
                                      "The GUI file '%FILE%' includes itself (line %LINE%)."};
inline constexpr TextKey includeTooDeep{"fenn.gui.CGUIBuilder.IncludeTooDeep",
                                        "Includes are nested too deeply in the GUI file '%FILE%' (line %LINE%)."};
inline constexpr TextKey tooManyIncludes{"fenn.gui.CGUIBuilder.TooManyIncludes",
                                         "The GUI file '%FILE%' includes other files too many times (line %LINE%)."};
inline constexpr TextKey fileTooLarge{"fenn.gui.CGUIBuilder.FileTooLarge", "The GUI file '%FILE%' is too large."};
inline constexpr TextKey unknownLayout{"fenn.gui.CGUIBuilder.unknownLayout", "Unknown layout type: '%TYPE%'."};
inline constexpr TextKey unknownComponentType{"fenn.gui.CGUIBuilder.unknownComponentType",
                                              "Unknown component type: %TYPE%."};
inline constexpr TextKey unknownSplitPanelType{"fenn.gui.CGUIBuilder.unknownSplitPanelType",
                                               "Unknown split panel orientation: %ORIENT%."};
inline constexpr TextKey unknownScrollType{"fenn.gui.CGUIBuilder.unknownScrollType", "Unknown scroll type: %TYPE%."};
inline constexpr TextKey needParent{"fenn.gui.CGUIBuilder.needParent", "Parent window is needed but not specified."};
inline constexpr TextKey noSizeLimitType{"fenn.gui.CGUIBuilder.noSizeLimitType", "No size limit type provided."};
inline constexpr TextKey unknownSizeType{"fenn.gui.CGUIBuilder.unknownSizeType", "Unknown size type: %TYPE%."};
inline constexpr TextKey unknownSizeLimitType{"fenn.gui.CGUIBuilder.unknownSizeLimitType",
                                              "Unknown size limit type: %TYPE%."};
inline constexpr TextKey invalidWindowSystem{"fenn.gui.CGUIBuilder.invalidWindowSystem",
                                             "Invalid window system id: '%ID%'."};
inline constexpr TextKey componentNotFound{"fenn.gui.CGUIBuilder.componentNotFound",
                                           "Cannot build component with the ID '%ID%': component not found."};

inline constexpr TextKey all[] = {
    xmlParseError,         missingAttribute,    invalidAttribute, unexpectedElement, includeCycle,
    includeTooDeep,        tooManyIncludes,     fileTooLarge,     unknownLayout,     unknownComponentType,
    unknownSplitPanelType, unknownScrollType,   needParent,       noSizeLimitType,   unknownSizeType,
    unknownSizeLimitType,  invalidWindowSystem, componentNotFound};

}  // namespace fenn::gui::builder::texts

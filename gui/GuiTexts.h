#pragma once

#include "foundation/TextKey.h"

// The user-visible texts of the GUI toolkit, with their keys.
namespace fenn::gui::texts {

inline constexpr TextKey imageConversionNoDetails{"fenn.gui.CImageConversionError.Desc.NoDetails",
                                                  "Error converting image data."};
inline constexpr TextKey imageConversion{"fenn.gui.CImageConversionError.Desc",
                                         "Error converting image data (%DETAILS%)."};

inline constexpr TextKey all[] = {imageConversionNoDetails, imageConversion};

}  // namespace fenn::gui::texts

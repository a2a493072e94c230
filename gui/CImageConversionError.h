#pragma once

#include "foundation/CError.h"

namespace fenn::gui {

// Image data that could not be decoded or converted.
class CImageConversionError : public CError
{
    FENN_ERROR_CLASS(CImageConversionError)
public:
    explicit CImageConversionError(const String& details = String());
};

}  // namespace fenn::gui

namespace fenn::gui::format::mng {

// A failure inside an MNG or JNG animation.
class CMNGError : public CError
{
    FENN_ERROR_CLASS(CMNGError)
public:
    explicit CMNGError(const String& description);
};

}  // namespace fenn::gui::format::mng

#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "foundation/IStream.h"
#include "gui/image/IImageDecoder.h"

namespace fenn::gui {

// What every decoder shares: the stream form of decode, which reads the
// whole file into memory first (the formats are small and their readers
// jump about in them). Stateless; any thread.
class CImageDecoderBase : public CObject, public virtual IImageDecoder
{
public:
    P<IImage> decodeStream(IInStream& stream) const override;

    // The bytes up to the stream's end. A file above kMaxEncodedImageBytes
    // throws CImageConversionError; stream failures keep their CStreamError.
    static std::vector<std::uint8_t> readImageFile(IInStream& stream);
};

}  // namespace fenn::gui

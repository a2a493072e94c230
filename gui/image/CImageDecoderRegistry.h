#pragma once

#include <mutex>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "foundation/IStream.h"
#include "gui/image/IImageDecoder.h"

namespace fenn::gui {

// The table of image decoders, and the one place that picks a decoder for a
// file: by its first bytes, never by its name, so a ".tga" that holds a PNG
// still shows. Decoders that know their files by a signature are asked
// first, in the order they were added; those that can only judge a header
// (TGA) after them. Built with the PNG, JNG, JPEG and TGA decoders; a format
// package adds its own with addDecoder. A shared singleton; any thread may
// decode at the same time (the table is locked only to look a decoder up).
class CImageDecoderRegistry : public CObject
{
public:
    static P<CImageDecoderRegistry> getInstance();

    CImageDecoderRegistry();

    void addDecoder(P<IImageDecoder> decoder);
    // The decoder that recognises the first bytes of a file, or null.
    P<IImageDecoder> findDecoder(std::span<const std::uint8_t> head) const;

    // Bytes that no decoder recognises throw CImageConversionError; so do
    // damaged files (a JNG's broken chunk structure throws CMNGError).
    P<IImage> decode(std::span<const std::uint8_t> bytes) const;
    // Reads the stream to its end first: a file above kMaxEncodedImageBytes
    // throws CImageConversionError, stream failures their CStreamError.
    P<IImage> decode(IInStream& stream) const;
    // Opens the URI through the CStreamManager; a missing file throws
    // CFileNotFoundError.
    P<IImage> decode(const CURI& uri) const;

private:
    mutable std::mutex m_mutex;
    std::vector<P<IImageDecoder>> m_decoders;
};

// The registry's decode, for short calls.
P<IImage> decodeImage(const CURI& uri);
P<IImage> decodeImage(std::span<const std::uint8_t> bytes);

}  // namespace fenn::gui

#include "gui/image/CImageDecoderRegistry.h"

#include "foundation/CObjectError.h"
#include "foundation/CStreamManager.h"
#include "foundation/TSingleton.h"
#include "gui/image/CImageDecoderBase.h"
#include "gui/image/CJNGDecoder.h"
#include "gui/image/CJPEGDecoder.h"
#include "gui/image/CPNGDecoder.h"
#include "gui/image/CTGADecoder.h"
#include "gui/image/RGBAPixels.h"

namespace fenn::gui {

P<CImageDecoderRegistry> CImageDecoderRegistry::getInstance()
{
    static TSingleton<CImageDecoderRegistry> instance([] { return make<CImageDecoderRegistry>(); });
    return instance.get();
}

CImageDecoderRegistry::CImageDecoderRegistry()
{
    m_decoders.push_back(make<CPNGDecoder>());
    m_decoders.push_back(make<CJNGDecoder>());
    m_decoders.push_back(make<CJPEGDecoder>());
    m_decoders.push_back(make<CTGADecoder>());
}

void CImageDecoderRegistry::addDecoder(P<IImageDecoder> decoder)
{
    if (!decoder) throw CInvalidArgError(this, "addDecoder", "decoder");
    std::lock_guard lock(m_mutex);
    m_decoders.push_back(std::move(decoder));
}

P<IImageDecoder> CImageDecoderRegistry::findDecoder(std::span<const std::uint8_t> head) const
{
    std::lock_guard lock(m_mutex);
    for (const ImageRecognition recognition : {ImageRecognition::signature, ImageRecognition::headerGuess}) {
        for (const P<IImageDecoder>& decoder : m_decoders) {
            if (decoder->getRecognition() == recognition && decoder->recognizes(head)) return decoder;
        }
    }
    return nullptr;
}

P<IImage> CImageDecoderRegistry::decode(std::span<const std::uint8_t> bytes) const
{
    const P<IImageDecoder> decoder = findDecoder(bytes);
    if (!decoder) throw imageError("image", "unknown image format");
    return decoder->decode(bytes);
}

P<IImage> CImageDecoderRegistry::decode(IInStream& stream) const
{
    const std::vector<std::uint8_t> bytes = CImageDecoderBase::readImageFile(stream);
    return decode(std::span<const std::uint8_t>(bytes));
}

P<IImage> CImageDecoderRegistry::decode(const CURI& uri) const
{
    const P<IInStream> stream = CStreamManager::getInstance()->openInStream(uri);
    const P<IImage> image = decode(*stream);
    stream->close();
    return image;
}

P<IImage> decodeImage(const CURI& uri)
{
    return CImageDecoderRegistry::getInstance()->decode(uri);
}

P<IImage> decodeImage(std::span<const std::uint8_t> bytes)
{
    return CImageDecoderRegistry::getInstance()->decode(bytes);
}

}  // namespace fenn::gui

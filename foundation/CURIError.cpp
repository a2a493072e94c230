#include "foundation/CURIError.h"

#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn {

namespace {

String uriOrUnknown(const CURI& uri)
{
    return uri.hasURI() ? uri.getRawURI() : String("<uri unknown>");
}

String chooseText(const CURI& uri, const TextKey& general, const TextKey& withURI, const char* placeholder)
{
    return uri.hasURI() ? localize(withURI).replace(placeholder, uri.getRawURI()) : localize(general);
}

}  // namespace

CURIError::CURIError(const CURI& uri, const String& text)
    : CError(String(), text.replace("%URI%", uriOrUnknown(uri))), m_uri(uri)
{
}

CURIError::CURIError(const String& uri, const String& text) : CURIError(CURI::fromUncheckedText(uri), text) {}

CURITypeNotSupportedError::CURITypeNotSupportedError(const CURI& uri)
    : CURIError(uri, chooseText(uri, texts::uriTypeNotSupportedGeneral, texts::uriTypeNotSupported, "%URI%"))
{
}

CURITypeNotSupportedError::CURITypeNotSupportedError(const String& uri)
    : CURITypeNotSupportedError(CURI::fromUncheckedText(uri))
{
}

CURIFormatError::CURIFormatError(const CURI& uri)
    : CURIError(uri, chooseText(uri, texts::uriFormatGeneral, texts::uriFormat, "%URI%"))
{
}

CURIFormatError::CURIFormatError(const String& uri) : CURIFormatError(CURI::fromUncheckedText(uri)) {}

CFileError::CFileError(const CURI& uri, const String& text) : CURIError(uri, text) {}

CFileError::CFileError(const String& uri, const String& text) : CURIError(uri, text) {}

CFileNotFoundError::CFileNotFoundError(const CURI& uri)
    : CFileError(uri, chooseText(uri, texts::fileNotFoundGeneral, texts::fileNotFound, "%FILE%"))
{
}

CFileNotFoundError::CFileNotFoundError(const String& uri) : CFileNotFoundError(CURI::fromUncheckedText(uri)) {}

CFileFormatNotSupportedError::CFileFormatNotSupportedError(const CURI& uri)
    : CFileError(uri, chooseText(uri, texts::fileFormatNotSupportedGeneral, texts::fileFormatNotSupported, "%FILE%"))
{
}

CFileFormatNotSupportedError::CFileFormatNotSupportedError(const String& uri)
    : CFileFormatNotSupportedError(CURI::fromUncheckedText(uri))
{
}

CStreamError::CStreamError(const CURI& uri, const String& text) : CURIError(uri, text) {}

CStreamError::CStreamError(const String& uri, const String& text) : CURIError(uri, text) {}

CEndOfStreamError::CEndOfStreamError(const CURI& uri)
    : CStreamError(uri, String("Unexpected end of data stream (uri: '") + uriOrUnknown(uri) + "').")
{
}

CEndOfStreamError::CEndOfStreamError(const String& uri) : CEndOfStreamError(CURI::fromUncheckedText(uri)) {}

CStreamClosedError::CStreamClosedError(const CURI& uri, const String& text) : CStreamError(uri, text) {}

CStreamClosedError::CStreamClosedError(const String& uri, const String& text) : CStreamError(uri, text) {}

}  // namespace fenn

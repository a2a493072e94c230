#include "foundation/CURIError.h"

#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn {

namespace {

String uriOrUnknown(const String& uri)
{
    return uri.isEmpty() ? String("<uri unknown>") : uri;
}

String chooseText(const String& uri, const TextKey& general, const TextKey& withURI, const char* placeholder)
{
    return uri.isEmpty() ? localize(general) : localize(withURI).replace(placeholder, uri);
}

}  // namespace

CURIError::CURIError(const String& uri, const String& text)
    : CError(String(), text.replace("%URI%", uriOrUnknown(uri))), m_uri(uri)
{
}

CURITypeNotSupportedError::CURITypeNotSupportedError(const String& uri)
    : CURIError(uri, chooseText(uri, texts::uriTypeNotSupportedGeneral, texts::uriTypeNotSupported, "%URI%"))
{
}

CURIFormatError::CURIFormatError(const String& uri)
    : CURIError(uri, chooseText(uri, texts::uriFormatGeneral, texts::uriFormat, "%URI%"))
{
}

CFileError::CFileError(const String& uri, const String& text) : CURIError(uri, text) {}

CFileNotFoundError::CFileNotFoundError(const String& uri)
    : CFileError(uri, chooseText(uri, texts::fileNotFoundGeneral, texts::fileNotFound, "%FILE%"))
{
}

CFileFormatNotSupportedError::CFileFormatNotSupportedError(const String& uri)
    : CFileError(uri, chooseText(uri, texts::fileFormatNotSupportedGeneral, texts::fileFormatNotSupported, "%FILE%"))
{
}

CStreamError::CStreamError(const String& uri, const String& text) : CURIError(uri, text) {}

CEndOfStreamError::CEndOfStreamError(const String& uri)
    : CStreamError(uri, String("Unexpected end of data stream (uri: '") + uriOrUnknown(uri) + "').")
{
}

CStreamClosedError::CStreamClosedError(const String& uri, const String& text) : CStreamError(uri, text) {}

}  // namespace fenn

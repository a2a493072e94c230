#pragma once

#include "foundation/CError.h"
#include "foundation/CURI.h"

namespace fenn {

// An error about a place named by a URI. The given text has "%URI%"
// replaced by the URI's text, or by "<uri unknown>" when the error has none.
//
// Each class takes the URI either as a CURI or as text. Text is kept whole
// even when it is no valid URI (CURI::fromUncheckedText), so building an
// error never throws another one.
class CURIError : public CError
{
    FENN_ERROR_CLASS(CURIError)
public:
    CURIError(const CURI& uri, const String& text);
    CURIError(const String& uri, const String& text);
    CURI getURI() const { return m_uri; }

private:
    CURI m_uri;
};

class CURITypeNotSupportedError : public CURIError
{
    FENN_ERROR_CLASS(CURITypeNotSupportedError)
public:
    explicit CURITypeNotSupportedError(const String& uri = String());
    explicit CURITypeNotSupportedError(const CURI& uri);
};

class CURIFormatError : public CURIError
{
    FENN_ERROR_CLASS(CURIFormatError)
public:
    explicit CURIFormatError(const String& uri = String());
    explicit CURIFormatError(const CURI& uri);
};

class CFileError : public CURIError
{
    FENN_ERROR_CLASS(CFileError)
public:
    CFileError(const String& uri, const String& text);
    CFileError(const CURI& uri, const String& text);
};

class CFileNotFoundError : public CFileError
{
    FENN_ERROR_CLASS(CFileNotFoundError)
public:
    explicit CFileNotFoundError(const String& uri = String());
    explicit CFileNotFoundError(const CURI& uri);
};

class CFileFormatNotSupportedError : public CFileError
{
    FENN_ERROR_CLASS(CFileFormatNotSupportedError)
public:
    explicit CFileFormatNotSupportedError(const String& uri = String());
    explicit CFileFormatNotSupportedError(const CURI& uri);
};

class CStreamError : public CURIError
{
    FENN_ERROR_CLASS(CStreamError)
public:
    CStreamError(const String& uri, const String& text);
    CStreamError(const CURI& uri, const String& text);
};

class CEndOfStreamError : public CStreamError
{
    FENN_ERROR_CLASS(CEndOfStreamError)
public:
    explicit CEndOfStreamError(const String& uri = String());
    explicit CEndOfStreamError(const CURI& uri);
};

class CStreamClosedError : public CStreamError
{
    FENN_ERROR_CLASS(CStreamClosedError)
public:
    CStreamClosedError(const String& uri, const String& text);
    CStreamClosedError(const CURI& uri, const String& text);
};

}  // namespace fenn

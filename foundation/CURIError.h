#pragma once

#include "foundation/CError.h"

namespace fenn {

// An error about a place named by a URI. The given text has "%URI%"
// replaced by the URI, or by "<uri unknown>" when the error has none.
// The URI is held as its text.
class CURIError : public CError
{
    FENN_ERROR_CLASS(CURIError)
public:
    CURIError(const String& uri, const String& text);
    String getURI() const { return m_uri; }

private:
    String m_uri;
};

class CURITypeNotSupportedError : public CURIError
{
    FENN_ERROR_CLASS(CURITypeNotSupportedError)
public:
    explicit CURITypeNotSupportedError(const String& uri = String());
};

class CURIFormatError : public CURIError
{
    FENN_ERROR_CLASS(CURIFormatError)
public:
    explicit CURIFormatError(const String& uri = String());
};

class CFileError : public CURIError
{
    FENN_ERROR_CLASS(CFileError)
public:
    CFileError(const String& uri, const String& text);
};

class CFileNotFoundError : public CFileError
{
    FENN_ERROR_CLASS(CFileNotFoundError)
public:
    explicit CFileNotFoundError(const String& uri = String());
};

class CFileFormatNotSupportedError : public CFileError
{
    FENN_ERROR_CLASS(CFileFormatNotSupportedError)
public:
    explicit CFileFormatNotSupportedError(const String& uri = String());
};

class CStreamError : public CURIError
{
    FENN_ERROR_CLASS(CStreamError)
public:
    CStreamError(const String& uri, const String& text);
};

class CEndOfStreamError : public CStreamError
{
    FENN_ERROR_CLASS(CEndOfStreamError)
public:
    explicit CEndOfStreamError(const String& uri = String());
};

class CStreamClosedError : public CStreamError
{
    FENN_ERROR_CLASS(CStreamClosedError)
public:
    CStreamClosedError(const String& uri, const String& text);
};

}  // namespace fenn

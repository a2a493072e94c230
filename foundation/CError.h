#pragma once

#include "foundation/CException.h"

namespace fenn {

// A failure of the program's own work. Empty texts become "Error" and
// "Unspecified error".
class CError : public CException
{
    FENN_ERROR_CLASS(CError)
public:
    explicit CError(String title = String(), String description = String());
};

// A text that could not be parsed into a value.
class CParseError : public CError
{
    FENN_ERROR_CLASS(CParseError)
public:
    explicit CParseError(String description);
};

class CInvalidVolumeIDError : public CError
{
    FENN_ERROR_CLASS(CInvalidVolumeIDError)
public:
    explicit CInvalidVolumeIDError(const String& volumeId);
};

class CNoSuchObjectError : public CError
{
    FENN_ERROR_CLASS(CNoSuchObjectError)
public:
    CNoSuchObjectError();
};

// An attempt to change something that only reads; objectDescription names it.
class CReadOnlyError : public CError
{
    FENN_ERROR_CLASS(CReadOnlyError)
public:
    explicit CReadOnlyError(const String& objectDescription);
};

}  // namespace fenn

#pragma once

#include <typeinfo>

#include "foundation/CError.h"

namespace fenn {

// Who an object error is about: an object, only its class, or nobody known.
class CObjectDescription
{
public:
    CObjectDescription() = default;
    CObjectDescription(const IBase* object);
    CObjectDescription(const std::type_info& type);

    // "object: " and the object's text, "object class: " and the class name,
    // or "unknown object".
    String getText() const { return m_text; }

private:
    String m_text{"unknown object"};
};

// An error about one object. The given text has "%OBJECTDESC%" replaced by
// the object's description; an empty text is the description alone.
class CObjectError : public CError
{
    FENN_ERROR_CLASS(CObjectError)
public:
    explicit CObjectError(const CObjectDescription& object, const String& text = String());

protected:
    CObjectError(String title, const CObjectDescription& object, const String& text);
};

class CCastError : public CObjectError
{
    FENN_ERROR_CLASS(CCastError)
public:
    CCastError(const IBase* object, const std::type_info& target);
};

class CInvalidArgError : public CObjectError
{
    FENN_ERROR_CLASS(CInvalidArgError)
public:
    CInvalidArgError(const CObjectDescription& object, const String& method, const String& argument);
};

class CInvalidObjectStateError : public CObjectError
{
    FENN_ERROR_CLASS(CInvalidObjectStateError)
public:
    explicit CInvalidObjectStateError(const CObjectDescription& object, const String& detail = String());
};

// next on an enumerator that has no more elements.
class CEndOfEnumError : public CInvalidObjectStateError
{
    FENN_ERROR_CLASS(CEndOfEnumError)
public:
    explicit CEndOfEnumError(const CObjectDescription& enumerator);
};

class CMethodNotImplementedError : public CObjectError
{
    FENN_ERROR_CLASS(CMethodNotImplementedError)
public:
    CMethodNotImplementedError(const CObjectDescription& object, const String& method);
};

}  // namespace fenn

#include "foundation/CObjectError.h"

#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"

namespace fenn {

CObjectDescription::CObjectDescription(const IBase* object)
{
    if (object != nullptr) m_text = String("object: ") + object->toString();
}

CObjectDescription::CObjectDescription(const std::type_info& type)
    : m_text(String("object class: ") + getClassName(type))
{
}

namespace {

String describe(const CObjectDescription& object, const String& text)
{
    return text.isEmpty() ? object.getText() : text.replace("%OBJECTDESC%", object.getText());
}

String orDefault(const String& value, const char* fallback)
{
    return value.isEmpty() ? String(fallback) : value;
}

}  // namespace

CObjectError::CObjectError(const CObjectDescription& object, const String& text)
    : CError("Object error", describe(object, text))
{
}

CObjectError::CObjectError(String title, const CObjectDescription& object, const String& text)
    : CError(std::move(title), describe(object, text))
{
}

CCastError::CCastError(const IBase* object, const std::type_info& target)
    : CObjectError("Cast error", CObjectDescription(object),
                   String("Error casting a '") + (object != nullptr ? getClassName(typeid(*object)) : String("null")) +
                       "' object to '" + getClassName(target) + "'.")
{
}

CInvalidArgError::CInvalidArgError(const CObjectDescription& object, const String& method, const String& argument)
    : CObjectError(object, String("An invalid argument was passed to method '") +
                               orDefault(method, "unspecified method") + "' of '" + object.getText() +
                               "': " + orDefault(argument, "unspecified argument"))
{
}

CInvalidObjectStateError::CInvalidObjectStateError(const CObjectDescription& object, const String& detail)
    : CObjectError(object, String("The object is in an invalid state (") + object.getText() + ")" +
                               (detail.isEmpty() ? String() : String(": ") + detail))
{
}

CEndOfEnumError::CEndOfEnumError(const CObjectDescription& enumerator)
    : CInvalidObjectStateError(enumerator, localize(texts::endOfEnum))
{
}

CMethodNotImplementedError::CMethodNotImplementedError(const CObjectDescription& object, const String& method)
    : CObjectError(object, String("Method not implemented (") + object.getText() +
                               "): " + orDefault(method, "unspecified method."))
{
}

}  // namespace fenn

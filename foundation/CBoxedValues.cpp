#include "foundation/CBoxedValues.h"

#include <charconv>
#include <string_view>

namespace fenn {

namespace {

// Shortest round-trip form: what a settings file writes must read back as
// the same bits, and "0.1" reads better than "0.10000000000000001".
template <class F> String floatingText(F value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return String::copyOf(std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)));
}

}  // namespace

String CBool::toString() const
{
    return m_value ? String("true") : String("false");
}

String CInt::toString() const
{
    return fromInt(m_value);
}

String CInt64::toString() const
{
    return fromInt(m_value);
}

String CFloat::toString() const
{
    return floatingText(m_value);
}

String CDouble::toString() const
{
    return floatingText(m_value);
}

}  // namespace fenn

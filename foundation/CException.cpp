#include "foundation/CException.h"

#include <string>

#include "foundation/CCharEncodings.h"

namespace fenn {

CException::CException(String title, String description)
    : m_title(std::move(title)), m_description(std::move(description))
{
}

const char* CException::what() const noexcept
{
    // Text already held as terminated multibyte text of the locale can be
    // handed out as it is; anything else is converted.
    if (m_description.isZeroTerminated() && m_description.hasEncoding(getCPEncoding().getID()))
        return m_description.getData();
    // One buffer per thread: the text stays valid until this thread asks
    // another error for its text.
    thread_local std::string buffer;
    try {
        const String converted = m_description.asCP();
        buffer.assign(converted.getData(), static_cast<std::size_t>(converted.getByteSize()));
    } catch (...) {
        return "out of memory";
    }
    return buffer.c_str();
}

}  // namespace fenn

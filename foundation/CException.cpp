#include "foundation/CException.h"

#include <string>

namespace fenn {

CException::CException(String title, String description)
    : m_title(std::move(title)), m_description(std::move(description))
{
}

const char* CException::what() const noexcept
{
    if (m_description.isZeroTerminated()) return m_description.getData();
    // One buffer per thread: the text stays valid until this thread asks
    // another error for its text.
    thread_local std::string buffer;
    try {
        buffer = m_description.toStdString();
    } catch (...) {
        return "out of memory";
    }
    return buffer.c_str();
}

}  // namespace fenn

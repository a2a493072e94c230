#include "tags/CMusicGenre.h"

namespace tbx {

CMusicGenre::CMusicGenre(const fenn::String& name, const fenn::String& aliases, std::int32_t number)
    : m_name(name), m_number(number)
{
    if (aliases.isEmpty()) {
        m_aliases.push_back(aliases);
        return;
    }
    for (const fenn::String& piece : aliases.split(",")) {
        const fenn::String alias = piece.trim();
        if (!alias.isEmpty()) m_aliases.push_back(alias);
    }
}

bool CMusicGenre::matches(const fenn::String& text) const
{
    if (text.equalsNoCase(m_name)) return true;
    for (const fenn::String& alias : m_aliases) {
        if (text.equalsNoCase(alias)) return true;
    }
    return false;
}

}  // namespace tbx

#pragma once

#include "foundation/CObject.h"
#include "tags/IMusicGenreList.h"

namespace tbx {

// A genre made from its display name, one text of aliases separated by
// commas, and its ID3v1 number. Each piece between commas is trimmed; empty
// pieces are dropped, except that an empty alias text gives one empty alias.
class CMusicGenre : public fenn::CObject, public virtual IMusicGenre
{
public:
    CMusicGenre(const fenn::String& name, const fenn::String& aliases, std::int32_t number);

    fenn::String getName() const override { return m_name; }
    const std::vector<fenn::String>& getAliases() const override { return m_aliases; }
    bool matches(const fenn::String& text) const override;
    std::int32_t getNumber() const override { return m_number; }

    fenn::String toString() const override { return m_name; }

private:
    fenn::String m_name;
    std::vector<fenn::String> m_aliases;
    std::int32_t m_number;
};

}  // namespace tbx

#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "tags/CMusicGenre.h"
#include "tags/IMusicGenreList.h"

namespace tbx {

// The program's 148 genres, one for each entry of the ID3v1 genre table
// (the published table with its extensions), in the program's display
// order. Display names are asked from the localizer when the list is built;
// aliases are the same in every language. The application builds one at
// start-up, after the language is chosen; it does not change afterwards, so
// any thread may read it.
class CMusicGenreList : public fenn::CObject, public virtual IMusicGenreList
{
public:
    // Entries of the ID3v1 genre table; its numbers run from 0 to kID3v1GenreCount - 1.
    static constexpr std::int32_t kID3v1GenreCount = 148;

    CMusicGenreList();

    std::int32_t getCount() const override;
    fenn::P<IMusicGenre> getGenre(std::int32_t index) const override;
    std::int32_t findIndex(const fenn::String& text) const override;
    fenn::P<IMusicGenre> findGenre(const fenn::String& text) const override;
    std::int32_t findIndexByNumber(std::int32_t number) const override;
    fenn::P<IMusicGenre> findGenreByNumber(std::int32_t number) const override;

private:
    std::vector<fenn::P<CMusicGenre>> m_genres;
};

}  // namespace tbx

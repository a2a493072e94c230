#pragma once

#include <cstdint>
#include <vector>

#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

namespace tbx {

// One music genre: its display name in the user's language, the other
// spellings it is known by, and its number in the ID3v1 genre table
// (0 to 147). Immutable; any thread may read it.
class IMusicGenre : public virtual fenn::IBase
{
public:
    virtual fenn::String getName() const = 0;
    virtual const std::vector<fenn::String>& getAliases() const = 0;
    // Whether text is the display name or one of the aliases, in any case.
    virtual bool matches(const fenn::String& text) const = 0;
    virtual std::int32_t getNumber() const = 0;
};

// The genres of the program in display order. It turns a genre text found
// in a file or typed by the user into a genre, and a genre into the number
// of the ID3v1 table. Built once at start-up and never changed afterwards.
class IMusicGenreList : public virtual fenn::IBase
{
public:
    virtual std::int32_t getCount() const = 0;
    // index from 0 to getCount() - 1; others throw CInvalidArgError.
    virtual fenn::P<IMusicGenre> getGenre(std::int32_t index) const = 0;
    // The index of the first genre that matches text, -1 when none does.
    virtual std::int32_t findIndex(const fenn::String& text) const = 0;
    virtual fenn::P<IMusicGenre> findGenre(const fenn::String& text) const = 0;
    // The index of the genre with this ID3v1 number, -1 when there is none.
    virtual std::int32_t findIndexByNumber(std::int32_t number) const = 0;
    virtual fenn::P<IMusicGenre> findGenreByNumber(std::int32_t number) const = 0;
};

}  // namespace tbx

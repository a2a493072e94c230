#pragma once

namespace fenn {

// A user-visible text: the key that a language pack translates, and the
// text shown when no pack has it.
struct TextKey
{
    const char* key;
    const char* defaultText;
};

}  // namespace fenn

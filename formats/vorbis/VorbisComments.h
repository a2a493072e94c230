#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CValueList.h"
#include "foundation/IEnum.h"
#include "foundation/IString.h"
#include "foundation/TCast.h"

// The rules that turn a tag value list into Vorbis comments ("NAME=value",
// the comment form that Ogg Vorbis and FLAC share) and back. Tag lists use
// lower-case keys ("artist", "tracknumber"); comment names are upper case,
// and the Vorbis comment format compares them without regard to case.
namespace tbx::vorbisComments {

// The "ENCODER" every written file carries, and the "DESCRIPTION" it gets
// when its tags bring none.
inline constexpr const char* encoderName = "Quorrel Tonebench 3";
inline constexpr const char* defaultDescription = "Encoded with Quorrel Tonebench 3.";

struct Comment
{
    std::string name;
    std::string value;
};

// A field name of the Vorbis comment format: printable ASCII without '='.
inline bool isValidName(std::string_view name)
{
    return !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char c) { return c >= 0x20 && c <= 0x7D && c != '='; });
}

inline std::string asciiUpper(std::string text)
{
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

inline std::string asciiLower(std::string text)
{
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

// The comments of a file written with tags: "ENCODER" first, then each tag
// with a non-empty value under its name in upper case, in name order (a tag
// "encoder" is left out, and so is a name the format cannot hold), and last
// the default "DESCRIPTION" when the tags gave none. Values that are not
// texts are written as their toString gives them.
inline std::vector<Comment> makeComments(const fenn::CValueList& tags)
{
    std::vector<Comment> fromTags;
    fenn::P<fenn::IConstEnum> names = tags.getNames();
    while (names->hasMoreElements()) {
        fenn::PC<fenn::IBase> element;
        names->next(element);
        const fenn::IString* nameText = fenn::TCast<fenn::IString>(element.get());
        if (nameText == nullptr) continue;
        const fenn::String name(fenn::P<fenn::IString>(const_cast<fenn::IString*>(nameText)));
        const fenn::P<fenn::IBase> value = tags.getValue(name);
        if (!value) continue;
        const std::string text = fenn::TCast<fenn::IString>(value.get()) != nullptr
                                     ? tags.getString(name, fenn::String()).toStdString()
                                     : value->toString().toStdString();
        std::string upperName = asciiUpper(name.toStdString());
        if (text.empty() || upperName == "ENCODER" || !isValidName(upperName)) continue;
        fromTags.push_back({std::move(upperName), text});
    }
    std::sort(fromTags.begin(), fromTags.end(), [](const Comment& a, const Comment& b) { return a.name < b.name; });

    std::vector<Comment> comments{{"ENCODER", encoderName}};
    const bool hasDescription =
        std::any_of(fromTags.begin(), fromTags.end(), [](const Comment& c) { return c.name == "DESCRIPTION"; });
    comments.insert(comments.end(), fromTags.begin(), fromTags.end());
    if (!hasDescription) comments.push_back({"DESCRIPTION", defaultDescription});
    return comments;
}

// Adds one comment "NAME=value" to a tag list under the name in lower case.
// When a name comes more than once the first value stays. A comment without
// "=" or with an empty or invalid name is passed over; the value is UTF-8.
inline void addComment(fenn::CValueList& tags, std::string_view comment)
{
    const std::size_t equals = comment.find('=');
    if (equals == std::string_view::npos) return;
    const std::string_view name = comment.substr(0, equals);
    if (!isValidName(name)) return;
    const fenn::String key = fenn::String::copyOf(asciiLower(std::string(name)));
    if (tags.hasValue(key)) return;
    tags.setString(key, fenn::String::copyOf(comment.substr(equals + 1)));
}

}  // namespace tbx::vorbisComments

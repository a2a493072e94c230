#include "foundation/String.h"

#include <cstring>
#include <string>

#include "foundation/CString.h"
#include "foundation/UTF8.h"

namespace fenn {

namespace {

// The shared empty text. It is never freed, so Strings held by other statics
// stay valid until the process is gone.
const P<IString>& emptyText()
{
    static const P<IString> empty(new CString("", -1, StringBufferMode::literal), adopt);
    return empty;
}

// Walks both texts code point by code point. Returns the position in haystack
// after a match of needle that starts at pos, or -1.
std::int32_t matchAt(const String& haystack, std::int32_t pos, const String& needle)
{
    if (needle.getByteSize() > haystack.getByteSize() - pos) return -1;
    if (std::memcmp(haystack.getData() + pos, needle.getData(), static_cast<std::size_t>(needle.getByteSize())) != 0)
        return -1;
    return pos + needle.getByteSize();
}

}  // namespace

String::String() : m_text(emptyText()) {}

String::String(const char* literal)
    : m_text(literal == nullptr || *literal == '\0'
                 ? emptyText()
                 : P<IString>(new CString(literal, -1, StringBufferMode::literal), adopt))
{
}

String::String(P<IString> text) : m_text(text ? std::move(text) : emptyText()) {}

String String::copyOf(std::string_view text)
{
    if (text.empty()) return String();
    return String(P<IString>(new CString(text.data(), static_cast<std::int32_t>(text.size()), StringBufferMode::copy),
                             adopt));
}

String String::asUTF8() const
{
    return isZeroTerminated() ? *this : copyOf(view());
}

const char* String::c_str() const
{
    // A text that is not terminated is replaced by a terminated copy; the
    // String stays the same text and keeps the copy for later calls.
    if (!isZeroTerminated()) const_cast<String*>(this)->m_text = asUTF8().m_text;
    return getData();
}

int String::compare(const String& other) const
{
    const char* a = getData();
    const char* b = other.getData();
    const std::int32_t sizeA = getByteSize();
    const std::int32_t sizeB = other.getByteSize();
    std::int32_t posA = 0;
    std::int32_t posB = 0;
    for (;;) {
        std::uint32_t cpA = 0;
        std::uint32_t cpB = 0;
        posA = utf8::decodeLenient(a, sizeA, posA, cpA);
        posB = utf8::decodeLenient(b, sizeB, posB, cpB);
        if (posA < 0) return posB < 0 ? 0 : -1;
        if (posB < 0) return 1;
        if (cpA != cpB) return cpA < cpB ? -1 : 1;
    }
}

bool String::equals(const String& other) const
{
    if (m_text.get() == other.m_text.get()) return true;
    return compare(other) == 0;
}

std::uint32_t hashCodePoints(const char* utf8, std::int32_t byteSize)
{
    std::uint32_t h = 0;
    std::uint32_t c = 0;
    for (std::int32_t pos = 0; (pos = utf8::decodeLenient(utf8, byteSize, pos, c)) >= 0;) {
        const auto shifted = static_cast<std::uint32_t>(static_cast<std::int32_t>(h) >> 2);
        h = ((h & 0x0FFFFFFFu) * 8u) ^ ((shifted ^ c) & 0x7FFFFFFFu);
    }
    return h;
}

std::uint32_t String::hash() const
{
    return hashCodePoints(getData(), getByteSize());
}

String String::concat(const String& other) const
{
    if (other.isEmpty()) return *this;
    if (isEmpty()) return other;
    std::string joined;
    joined.reserve(static_cast<std::size_t>(getByteSize()) + static_cast<std::size_t>(other.getByteSize()));
    joined.append(view()).append(other.view());
    return copyOf(joined);
}

String& String::operator+=(const String& other)
{
    *this = concat(other);
    return *this;
}

String String::replace(const String& from, const String& to) const
{
    if (from.isEmpty() || from.getByteSize() > getByteSize()) return *this;
    std::string result;
    bool replaced = false;
    std::int32_t pos = 0;
    while (pos < getByteSize()) {
        const std::int32_t end = matchAt(*this, pos, from);
        if (end >= 0) {
            result.append(to.view());
            pos = end;
            replaced = true;
        } else {
            result += getData()[pos++];
        }
    }
    return replaced ? copyOf(result) : *this;
}

bool String::startsWith(const String& prefix) const
{
    return matchAt(*this, 0, prefix) >= 0;
}

bool String::contains(const String& needle) const
{
    return view().find(needle.view()) != std::string_view::npos;
}

String fromInt(std::int64_t value)
{
    return String::copyOf(std::to_string(value));
}

}  // namespace fenn

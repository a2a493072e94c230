// Search and derived text of String: everything that walks a string to find
// or cut pieces. Walks go through CCharReader and allocate nothing; derived
// texts are slices where they can be.
#include <locale.h>
#include <wctype.h>

#include <cstring>

#include "foundation/CCharEncodings.h"
#include "foundation/CString.h"
#include "foundation/CUnicodeData.h"
#include "foundation/String.h"
#include "foundation/StringBuilder.h"

namespace fenn {

namespace {

bool isWhiteSpace(std::uint32_t codePoint)
{
    if ((codePoint >= 9 && codePoint <= 13) || codePoint == 0x85) return true;
    return (CUnicodeData::getCategory(static_cast<std::int32_t>(codePoint)) & 0xF0) == 0x60;
}

// Whether the code point is one of the set's.
bool isIn(std::uint32_t codePoint, const String& set)
{
    CCharReader reader(*set.getText());
    for (std::uint32_t member = 0; reader.read(member);) {
        if (member == codePoint) return true;
    }
    return false;
}

// The simple upper-case form from the C library's Unicode tables, in the
// locale-independent C.UTF-8 locale, so the user's locale does not change
// the result.
std::uint32_t upperCaseOf(std::uint32_t codePoint)
{
    static const locale_t unicodeLocale = newlocale(LC_CTYPE_MASK, "C.UTF-8", static_cast<locale_t>(nullptr));
    if (unicodeLocale == static_cast<locale_t>(nullptr))
        return codePoint >= 'a' && codePoint <= 'z' ? codePoint - 0x20 : codePoint;
    return static_cast<std::uint32_t>(towupper_l(static_cast<wint_t>(codePoint), unicodeLocale));
}

// The position of the first code point from `from` on that satisfies the test.
template <class Test> CStringPos findFirstWhere(const String& text, CStringPos from, Test test)
{
    if (from.isEnd()) return from;
    CCharReader reader(*text.getText(), from);
    for (;;) {
        const CStringPos candidate = reader.getPos();
        std::uint32_t found = 0;
        if (!reader.read(found)) return CStringPos::end();
        if (test(found)) return candidate;
    }
}

CStringPos endOf(const String& text)
{
    return {text.getLength(), text.getByteSize()};
}

}  // namespace

// ---- search ----

CStringPos String::find(const String& needle, CStringPos from, CaseSensitivity caseSensitivity) const
{
    if (from.isEnd()) return from;
    if (needle.isEmpty()) return from;
    // Candidates nearer the end than the needle is long cannot match.
    const std::int32_t lastStart = getLength() - needle.getLength();
    std::uint32_t first = 0;
    CCharReader needleStart(*needle.m_text);
    needleStart.read(first);
    first = foldCodePoint(first, caseSensitivity);
    const CStringPos afterFirst = needleStart.getPos();

    CCharReader reader(*m_text, from);
    for (;;) {
        const CStringPos candidate = reader.getPos();
        if (candidate.index > lastStart) return CStringPos::end();
        std::uint32_t codePoint = 0;
        if (!reader.read(codePoint)) return CStringPos::end();
        if (foldCodePoint(codePoint, caseSensitivity) != first) continue;
        CCharReader probe = reader;
        CCharReader rest(*needle.m_text, afterFirst);
        bool matched = true;
        for (std::uint32_t wanted = 0; matched && rest.read(wanted);) {
            std::uint32_t found = 0;
            matched =
                probe.read(found) && foldCodePoint(found, caseSensitivity) == foldCodePoint(wanted, caseSensitivity);
        }
        if (matched) return candidate;
    }
}

CStringPos String::find(std::uint32_t codePoint, CStringPos from) const
{
    return findFirstWhere(*this, from, [codePoint](std::uint32_t c) { return c == codePoint; });
}

CStringPos String::findLast(const String& needle, CStringPos limit, CaseSensitivity caseSensitivity) const
{
    // A forward walk that remembers the last hit serves every encoding,
    // including those that cannot be read backward.
    const std::int32_t limitIndex = limit.isEnd() ? getLength() + 1 : limit.index;
    CStringPos last = CStringPos::end();
    for (CStringPos hit = find(needle, {}, caseSensitivity); !hit.isEnd() && hit.index < limitIndex;
         hit = find(needle, next(hit), caseSensitivity)) {
        last = hit;
        if (hit.index >= getLength()) break;
    }
    return last;
}

CStringPos String::findAnyOf(const String& codePoints, CStringPos from) const
{
    return findFirstWhere(*this, from, [&codePoints](std::uint32_t c) { return isIn(c, codePoints); });
}

CStringPos String::findNotOf(const String& codePoints, CStringPos from) const
{
    return findFirstWhere(*this, from, [&codePoints](std::uint32_t c) { return !isIn(c, codePoints); });
}

std::int32_t String::countOf(const String& needle, CaseSensitivity caseSensitivity) const
{
    if (needle.isEmpty()) return 0;
    std::int32_t count = 0;
    const std::int32_t length = needle.getLength();
    for (CStringPos hit = find(needle, {}, caseSensitivity); !hit.isEnd();
         hit = find(needle, advance(hit, length), caseSensitivity))
        ++count;
    return count;
}

// ---- derived text ----

String String::substring(CStringPos start, CStringPos end) const
{
    if (start.isEnd()) return String(getEmptyString(getEncoding()));
    if (end.isEnd()) end = endOf(*this);
    if (end.byteOffset <= start.byteOffset) return String(getEmptyString(getEncoding()));
    if (start.byteOffset == 0 && end.byteOffset == getByteSize()) return *this;
    return String(
        P<IString>(new CStringSlice(m_text, start.byteOffset, end.byteOffset, end.index - start.index), adopt));
}

String String::substring(std::int32_t start, std::int32_t length) const
{
    const CStringPos from = getPos(start < 0 ? 0 : start);
    const CStringPos to = length < 0 ? CStringPos::end() : advance(from, length);
    return substring(from, to);
}

String String::right(std::int32_t length) const
{
    const std::int32_t total = getLength();
    return length >= total ? *this : substring(total - length);
}

String String::concat(const String& other) const
{
    if (other.isEmpty()) return *this;
    if (isEmpty()) return other;
    CStringBuilder builder(commonEncoding(getEncoding(), other.getEncoding()));
    builder.append(*this);
    builder.append(other);
    return builder.finish();
}

String& String::operator+=(const String& other)
{
    *this = concat(other);
    return *this;
}

String String::replace(const String& from, const String& to, CaseSensitivity caseSensitivity) const
{
    CStringPos hit = find(from, {}, caseSensitivity);
    if (hit.isEnd() || from.isEmpty()) return *this;
    CStringBuilder builder(commonEncoding(getEncoding(), to.getEncoding()));
    const std::int32_t length = from.getLength();
    CStringPos done{};
    while (!hit.isEnd()) {
        builder.append(*this, done, hit);
        builder.append(to);
        done = advance(hit, length);
        hit = find(from, done, caseSensitivity);
    }
    builder.append(*this, done, CStringPos::end());
    return builder.finish();
}

String String::replaceFirst(const String& from, const String& to, CaseSensitivity caseSensitivity) const
{
    const CStringPos hit = find(from, {}, caseSensitivity);
    if (hit.isEnd() || from.isEmpty()) return *this;
    CStringBuilder builder(commonEncoding(getEncoding(), to.getEncoding()));
    builder.append(*this, {}, hit);
    builder.append(to);
    builder.append(*this, advance(hit, from.getLength()), CStringPos::end());
    return builder.finish();
}

String String::insert(std::int32_t index, const String& text) const
{
    const CStringPos at = getPos(index < 0 ? 0 : index);
    if (at.isEnd()) return concat(text);
    CStringBuilder builder(commonEncoding(getEncoding(), text.getEncoding()));
    builder.append(*this, {}, at);
    builder.append(text);
    builder.append(*this, at, CStringPos::end());
    return builder.finish();
}

String String::remove(std::int32_t start, std::int32_t length) const
{
    const CStringPos from = getPos(start < 0 ? 0 : start);
    if (from.isEnd() || length == 0) return *this;
    const CStringPos to = length < 0 ? CStringPos::end() : advance(from, length);
    if (from.index == 0) return substring(to, CStringPos::end());
    if (to.isEnd()) return substring({}, from);
    CStringBuilder builder(getEncoding());
    builder.append(*this, {}, from);
    builder.append(*this, to, CStringPos::end());
    return builder.finish();
}

String String::trimLeft() const
{
    CCharReader reader(*m_text);
    for (;;) {
        const CStringPos start = reader.getPos();
        std::uint32_t codePoint = 0;
        if (!reader.read(codePoint)) return String(getEmptyString(getEncoding()));
        if (!isWhiteSpace(codePoint)) return substring(start, CStringPos::end());
    }
}

String String::trimRight() const
{
    CCharReader reader(*m_text);
    CStringPos end{};
    for (std::uint32_t codePoint = 0; reader.read(codePoint);) {
        if (!isWhiteSpace(codePoint)) end = reader.getPos();
    }
    return substring({}, end);
}

String String::trim() const
{
    return trimLeft().trimRight();
}

String String::toLowerCase() const
{
    CStringBuilder builder(getEncoding());
    CCharReader reader(*m_text);
    for (std::uint32_t codePoint = 0; reader.read(codePoint);)
        builder.appendCodePoint(static_cast<std::uint32_t>(CUnicodeData::fold(static_cast<std::int32_t>(codePoint))));
    return builder.finish();
}

String String::toUpperCase() const
{
    CStringBuilder builder(getEncoding());
    CCharReader reader(*m_text);
    for (std::uint32_t codePoint = 0; reader.read(codePoint);) builder.appendCodePoint(upperCaseOf(codePoint));
    return builder.finish();
}

std::vector<String> String::split(const String& separator) const
{
    std::vector<String> pieces;
    if (separator.isEmpty()) {
        pieces.push_back(*this);
        return pieces;
    }
    const std::int32_t length = separator.getLength();
    CStringPos start{};
    for (CStringPos hit = find(separator); !hit.isEnd(); hit = find(separator, start)) {
        pieces.push_back(substring(start, hit));
        start = advance(hit, length);
    }
    pieces.push_back(substring(start, CStringPos::end()));
    return pieces;
}

}  // namespace fenn

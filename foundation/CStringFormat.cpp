#include "foundation/CStringFormat.h"

#include <climits>
#include <cstdio>

#include "foundation/CObjectError.h"
#include "foundation/UTF8.h"

namespace fenn {

namespace {

constexpr const char* kTooManyFlags = "CStringFormat: too many field flags specified.";
constexpr const char* kInvalidFormat = "CStringFormat: invalid format string.";
constexpr const char* kArgumentMismatch = "CStringFormat: argument does not match the field's format specification.";
constexpr const char* kWidthNotInteger = "CStringFormat: expected integer value (field width).";
constexpr const char* kPrecisionNotInteger = "CStringFormat: expected integer value (field precision).";
constexpr const char* kNotComplete = "CStringFormat: not all parameters have been pushed in yet.";
constexpr const char* kNoFieldLeft = "CStringFormat: more arguments pushed than the format has fields.";

constexpr std::size_t kMaxFlags = 6;

// printf with a format built at run time, into a string of the right size.
template <class Value>
std::string printField(const std::string& format, bool hasWidth, int width, bool hasPrecision, int precision,
                       Value value)
{
    const auto print = [&](char* buffer, std::size_t size) {
        if (hasWidth && hasPrecision) return std::snprintf(buffer, size, format.c_str(), width, precision, value);
        if (hasWidth) return std::snprintf(buffer, size, format.c_str(), width, value);
        if (hasPrecision) return std::snprintf(buffer, size, format.c_str(), precision, value);
        return std::snprintf(buffer, size, format.c_str(), value);
    };
    const int length = print(nullptr, 0);
    if (length <= 0) return std::string();
    std::string text(static_cast<std::size_t>(length), '\0');
    print(text.data(), text.size() + 1);
    return text;
}

// Clamps a pushed "*" value to the range printf takes.
int clampToInt(std::uint64_t bits, bool isSigned)
{
    if (isSigned) {
        const auto value = static_cast<std::int64_t>(bits);
        return value > INT_MAX ? INT_MAX : value < -INT_MAX ? -INT_MAX : static_cast<int>(value);
    }
    return bits > static_cast<std::uint64_t>(INT_MAX) ? INT_MAX : static_cast<int>(bits);
}

}  // namespace

CStringFormat::CStringFormat(const String& format) : m_format(format.toStdString())
{
    advance("CStringFormat");
}

void CStringFormat::throwInvalidArgument(const char* method, const char* text) const
{
    throw CInvalidArgError(this, method, text);
}

void CStringFormat::advance(const char* method)
{
    m_inField = false;
    while (m_pos < m_format.size()) {
        const std::size_t percent = m_format.find('%', m_pos);
        m_result.append(m_format, m_pos, percent == std::string::npos ? std::string::npos : percent - m_pos);
        if (percent == std::string::npos) {
            m_pos = m_format.size();
            return;
        }
        m_pos = percent + 1;
        if (m_pos < m_format.size() && m_format[m_pos] == '%') {
            m_result += '%';
            ++m_pos;
            continue;
        }
        // The field is outstanding from here on, even when its description
        // turns out to be broken: the result is then never complete.
        m_inField = true;
        m_field = Field();
        m_field.invalid = true;
        parseField(method);
        m_field.invalid = false;
        return;
    }
}

int CStringFormat::parseNumber(const char* method)
{
    int value = 0;
    for (; m_pos < m_format.size() && m_format[m_pos] >= '0' && m_format[m_pos] <= '9'; ++m_pos) {
        if (value > (INT_MAX - 9) / 10) throwInvalidArgument(method, kInvalidFormat);
        value = value * 10 + (m_format[m_pos] - '0');
    }
    return value;
}

void CStringFormat::parseField(const char* method)
{
    const auto at = [this](std::string_view text) {
        return std::string_view(m_format).substr(m_pos).starts_with(text);
    };

    while (m_pos < m_format.size() && std::string_view("-+0# ").find(m_format[m_pos]) != std::string_view::npos) {
        if (m_field.flags.size() == kMaxFlags) throwInvalidArgument(method, kTooManyFlags);
        m_field.flags += m_format[m_pos++];
    }

    if (at("*")) {
        ++m_pos;
        m_field.hasWidth = m_field.widthPending = true;
    } else if (m_pos < m_format.size() && m_format[m_pos] >= '0' && m_format[m_pos] <= '9') {
        m_field.hasWidth = true;
        m_field.width = parseNumber(method);
    }

    if (at(".")) {
        ++m_pos;
        m_field.hasPrecision = true;
        if (at("*")) {
            ++m_pos;
            m_field.precisionPending = true;
        } else {
            m_field.precision = parseNumber(method);  // "." alone is a precision of 0, as in printf
        }
    }

    // The modifiers are read for the sake of the grammar; the width of an
    // integer comes from the pushed type, and only "h" and "hh" narrow it.
    if (at("hh")) {
        m_pos += 2;
        m_field.integerSize = 1;
    } else if (at("h")) {
        m_pos += 1;
        m_field.integerSize = 2;
    } else if (at("ll") || at("I64")) {
        m_pos += at("ll") ? 2 : 3;
    } else if (at("l") || at("L") || at("z") || at("j") || at("t")) {
        m_pos += 1;
    }

    if (m_pos >= m_format.size()) throwInvalidArgument(method, kInvalidFormat);
    const char conversion = m_format[m_pos];
    switch (conversion) {
    case 'd':
    case 'i':
    case 'o':
    case 'x':
    case 'X':
    case 'u':
        m_field.kind = ArgumentKind::integer;
        break;
    case 'e':
    case 'E':
    case 'f':
    case 'g':
    case 'G':
        m_field.kind = ArgumentKind::floating;
        break;
    case 'c':
    case 'C':
        m_field.kind = ArgumentKind::character;
        break;
    case 's':
    case 'S':
        m_field.kind = ArgumentKind::string;
        break;
    default:
        throwInvalidArgument(method, kInvalidFormat);
    }
    m_field.conversion = conversion;
    ++m_pos;
}

bool CStringFormat::takeStarArgument(std::uint64_t bits, bool isSigned, const char* method)
{
    if (!m_inField) throwInvalidArgument(method, kNoFieldLeft);
    if (m_field.invalid) throwInvalidArgument(method, kInvalidFormat);
    if (m_field.widthPending) {
        int width = clampToInt(bits, isSigned);
        // A negative width is a "-" flag and the positive width, as in printf.
        if (width < 0) {
            m_field.flags += '-';
            width = -width;
        }
        m_field.width = width;
        m_field.widthPending = false;
        return true;
    }
    if (m_field.precisionPending) {
        // A negative precision counts as none, as in printf.
        m_field.precision = clampToInt(bits, isSigned);
        m_field.hasPrecision = m_field.precision >= 0;
        m_field.precisionPending = false;
        return true;
    }
    return false;
}

void CStringFormat::requireField(ArgumentKind kind, const char* method)
{
    if (!m_inField) throwInvalidArgument(method, kNoFieldLeft);
    if (m_field.invalid) throwInvalidArgument(method, kInvalidFormat);
    if (m_field.widthPending) throwInvalidArgument(method, kWidthNotInteger);
    if (m_field.precisionPending) throwInvalidArgument(method, kPrecisionNotInteger);
    if (m_field.kind != kind) throwInvalidArgument(method, kArgumentMismatch);
}

void CStringFormat::appendPadded(std::string_view text, std::int32_t codePoints)
{
    const std::size_t padding =
        m_field.hasWidth && m_field.width > codePoints ? static_cast<std::size_t>(m_field.width - codePoints) : 0;
    const bool leftAligned = m_field.flags.find('-') != std::string::npos;
    if (!leftAligned) m_result.append(padding, ' ');
    m_result.append(text);
    if (leftAligned) m_result.append(padding, ' ');
}

CStringFormat& CStringFormat::pushInteger(std::uint64_t bits, bool isSigned, int byteSize)
{
    if (takeStarArgument(bits, isSigned, "push")) return *this;
    if (m_inField && !m_field.invalid && m_field.kind == ArgumentKind::character && !m_field.widthPending &&
        !m_field.precisionPending)
        return push(static_cast<char32_t>(bits));
    requireField(ArgumentKind::integer, "push");

    // The value as printf reads an argument of the pushed size, narrowed
    // further by "h" or "hh": sign-extended for d and i, cut to its bits for
    // the unsigned conversions.
    const int size = byteSize < m_field.integerSize ? byteSize : m_field.integerSize;
    const int unusedBits = 64 - 8 * size;
    const bool signedConversion = m_field.conversion == 'd' || m_field.conversion == 'i';
    const std::string format = "%" + m_field.flags + (m_field.hasWidth ? "*" : "") +
                               (m_field.hasPrecision ? ".*" : "") + "ll" + m_field.conversion;
    if (signedConversion) {
        const auto value = static_cast<long long>(static_cast<std::int64_t>(bits << unusedBits) >> unusedBits);
        m_result += printField(format, m_field.hasWidth, m_field.width, m_field.hasPrecision, m_field.precision, value);
    } else {
        const auto value = static_cast<unsigned long long>((bits << unusedBits) >> unusedBits);
        m_result += printField(format, m_field.hasWidth, m_field.width, m_field.hasPrecision, m_field.precision, value);
    }
    advance("push");
    return *this;
}

CStringFormat& CStringFormat::push(double value)
{
    requireField(ArgumentKind::floating, "push");
    const std::string format =
        "%" + m_field.flags + (m_field.hasWidth ? "*" : "") + (m_field.hasPrecision ? ".*" : "") + m_field.conversion;
    m_result += printField(format, m_field.hasWidth, m_field.width, m_field.hasPrecision, m_field.precision, value);
    advance("push");
    return *this;
}

CStringFormat& CStringFormat::push(const String& value)
{
    requireField(ArgumentKind::string, "push");
    const std::string text = value.toStdString();
    const auto* data = text.data();
    const auto size = static_cast<std::int32_t>(text.size());
    // The precision is a number of code points; so is the count that the
    // width pads up to.
    const std::int32_t limit = m_field.hasPrecision ? m_field.precision : INT_MAX;
    std::int32_t end = 0;
    std::int32_t count = 0;
    std::uint32_t codePoint = 0;
    for (std::int32_t next = 0; count < limit && (next = utf8::decodeLenient(data, size, end, codePoint)) >= 0;
         end = next)
        ++count;
    appendPadded(std::string_view(data, static_cast<std::size_t>(m_field.hasPrecision ? end : size)), count);
    advance("push");
    return *this;
}

CStringFormat& CStringFormat::push(char32_t codePoint)
{
    requireField(ArgumentKind::character, "push");
    std::string text;
    utf8::append(text, codePoint);
    appendPadded(text, text.empty() ? 0 : 1);
    advance("push");
    return *this;
}

String CStringFormat::getResult() const
{
    if (m_inField) throw CInvalidObjectStateError(this, kNotComplete);
    return String::copyOf(m_result);
}

}  // namespace fenn

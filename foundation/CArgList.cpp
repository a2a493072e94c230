#include "foundation/CArgList.h"

#include <algorithm>
#include <string>

#include "foundation/CError.h"
#include "foundation/CObjectError.h"
#include "foundation/ValueParsers.h"

namespace fenn {

namespace {

bool isASCIILetter(std::uint32_t c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isValidOptionName(const String& name)
{
    const std::u32string codePoints = name.toUTF32();
    if (codePoints.empty() || !isASCIILetter(codePoints.front())) return false;
    for (const char32_t c : codePoints) {
        if (!isASCIILetter(c) && !(c >= '0' && c <= '9') && c != '.' && c != '_' && c != '-') return false;
    }
    return true;
}

// The option an argument stands for, or null when it is positional. body is
// the argument without a leading "--"; dashes tells whether there was one.
P<CArg> parseOption(const String& text, const String& body, bool dashes)
{
    const CStringPos equals = body.find('=');
    if (equals.isEnd()) {
        if (!dashes || !isValidOptionName(body)) return nullptr;
        return make<CArg>(CArg::Kind::option, body, String("true"), text);
    }
    const String name = body.left(equals.index);
    if (!isValidOptionName(name)) return nullptr;
    return make<CArg>(CArg::Kind::option, name, body.substring(equals.index + 1), text);
}

// Walks a list of names fixed at construction.
class CNameEnum : public CObject, public virtual IConstEnum
{
public:
    explicit CNameEnum(std::vector<String> names) : m_names(std::move(names)) {}
    bool hasMoreElements() override { return m_position < m_names.size(); }
    std::int32_t getCount() override { return static_cast<std::int32_t>(m_names.size()); }
    void next(PC<IBase>& element) override
    {
        if (m_position >= m_names.size()) throw CEndOfEnumError(this);
        element = m_names[m_position++].getText();
    }
    void reset() override { m_position = 0; }

private:
    std::vector<String> m_names;
    std::size_t m_position = 0;
};

}  // namespace

CArgList::CArgList(const std::vector<String>& arguments) : m_args(static_cast<std::int32_t>(arguments.size()))
{
    bool optionsEnded = false;
    std::int32_t positionalCount = 0;
    for (const String& text : arguments) {
        if (!optionsEnded && text.equals("--")) {
            optionsEnded = true;
            continue;
        }
        P<CArg> arg;
        if (!optionsEnded) {
            const bool dashes = text.startsWith("--");
            arg = parseOption(text, dashes ? text.substring(2) : text, dashes);
        }
        if (!arg) arg = make<CArg>(CArg::Kind::positional, fromInt(positionalCount++), text, text);
        if (std::find(m_names.begin(), m_names.end(), arg->getName()) == m_names.end()) {
            m_names.push_back(arg->getName());
        }
        m_args.add(arg);
    }
}

P<CArgList> CArgList::fromCommandLine(int argc, const char* const* argv)
{
    std::vector<String> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(String::copyOf(argv[i]));
    return make<CArgList>(arguments);
}

P<CArg> CArgList::findArg(const String& name) const
{
    for (std::int32_t i = m_args.getCount() - 1; i >= 0; --i) {
        if (m_args.get(i)->getName().equals(name)) return m_args.get(i);
    }
    return nullptr;
}

P<IBase> CArgList::getValue(const String& name) const
{
    const P<CArg> arg = findArg(name);
    return arg ? P<IBase>(arg->getValue().getText()) : nullptr;
}

namespace {

// The parsed value of an argument, or the default when it is missing or
// does not parse: reads of a value list never throw for the value's type.
template <class T, class Parse> T parsedOrDefault(const P<CArg>& arg, T defaultValue, Parse parse)
{
    if (!arg) return defaultValue;
    try {
        return parse(arg->getValue());
    } catch (const CParseError&) {
        return defaultValue;
    }
}

}  // namespace

bool CArgList::getBool(const String& name, bool defaultValue) const
{
    return parsedOrDefault(findArg(name), defaultValue, parseBool);
}

std::int32_t CArgList::getInt(const String& name, std::int32_t defaultValue) const
{
    return parsedOrDefault(findArg(name), defaultValue, parseInt);
}

std::int64_t CArgList::getInt64(const String& name, std::int64_t defaultValue) const
{
    return parsedOrDefault(findArg(name), defaultValue, parseInt64);
}

float CArgList::getFloat(const String& name, float defaultValue) const
{
    return parsedOrDefault(findArg(name), defaultValue, parseFloat);
}

double CArgList::getDouble(const String& name, double defaultValue) const
{
    return parsedOrDefault(findArg(name), defaultValue, parseDouble);
}

String CArgList::getString(const String& name, const String& defaultValue) const
{
    const P<CArg> arg = findArg(name);
    return arg ? arg->getValue() : defaultValue;
}

P<IBase> CArgList::getObject(const String& name, const P<IBase>& defaultValue) const
{
    P<IBase> value = getValue(name);
    return value ? value : defaultValue;
}

void CArgList::throwReadOnly() const
{
    throw CReadOnlyError("argument list");
}

bool CArgList::setValue(const String&, const P<IBase>&)
{
    throwReadOnly();
}

bool CArgList::setBool(const String&, bool)
{
    throwReadOnly();
}

bool CArgList::setInt(const String&, std::int32_t)
{
    throwReadOnly();
}

bool CArgList::setInt64(const String&, std::int64_t)
{
    throwReadOnly();
}

bool CArgList::setFloat(const String&, float)
{
    throwReadOnly();
}

bool CArgList::setDouble(const String&, double)
{
    throwReadOnly();
}

bool CArgList::setString(const String&, const String&)
{
    throwReadOnly();
}

bool CArgList::removeValue(const String&)
{
    throwReadOnly();
}

void CArgList::removeAll()
{
    throwReadOnly();
}

void CArgList::assign(const IValueList&)
{
    throwReadOnly();
}

P<IConstEnum> CArgList::getNames() const
{
    return make<CNameEnum>(m_names);
}

}  // namespace fenn

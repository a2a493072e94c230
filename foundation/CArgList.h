#pragma once

#include <cstdint>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/IValueList.h"
#include "foundation/TSimpleArray.h"

namespace fenn {

// One command-line argument: the text as given and the name and value it
// stands for in a CArgList.
class CArg : public CObject
{
public:
    enum class Kind { option, positional };

    CArg(Kind kind, String name, String value, String text)
        : m_kind(kind), m_name(std::move(name)), m_value(std::move(value)), m_text(std::move(text))
    {
    }

    Kind getKind() const { return m_kind; }
    const String& getName() const { return m_name; }
    const String& getValue() const { return m_value; }
    // The argument exactly as it was on the command line.
    const String& getText() const { return m_text; }

private:
    Kind m_kind;
    String m_name;
    String m_value;
    String m_text;
};

// The command line as a read-only value list. Every value is text (an
// IString); the typed getters parse it with the parsers of ValueParsers.h and
// give the default when it does not parse. Every write throws CReadOnlyError.
//
// How an argument becomes a name and a value:
//   --name=value   option "name" with the text after the first '=' (which
//                  may be empty or hold further '=')
//   --name         option "name" with the value "true", so getBool sees a
//                  switch
//   name=value     option "name", when the part before the first '=' is a
//                  valid name; "mainwindow.width=800" sets a key as a
//                  settings file would
//   --             ends the options: every later argument is positional
//   anything else  positional: "-v", "/music/a=b.wav", "", "--5"
// A valid name starts with an ASCII letter and goes on with ASCII letters,
// digits, '.', '_' and '-'. A positional argument is named by its place among
// the positional ones, "0", "1", ..., which no option name can take.
//
// Names are case-sensitive. When an option comes more than once the last one
// counts: a script can append a correction. getNames gives each name once,
// in the order of its first appearance, and getCount counts those names.
// getArg walks all arguments in command-line order, "--" left out.
//
// Immutable after construction, so any thread may read it.
class CArgList : public CObject, public virtual IValueList
{
public:
    explicit CArgList(const std::vector<String>& arguments);

    // The arguments of main, without the program name; the bytes are taken
    // as UTF-8, the form of file names and terminals on this platform.
    static P<CArgList> fromCommandLine(int argc, const char* const* argv);

    std::int32_t getArgCount() const { return m_args.getCount(); }
    const P<CArg>& getArg(std::int32_t index) const { return m_args.get(index); }
    // The argument that gives name its value (the last of that name), or null.
    P<CArg> findArg(const String& name) const;

    bool isOpen() const override { return true; }
    bool hasValue(const String& name) const override { return findArg(name) != nullptr; }
    P<IBase> getValue(const String& name) const override;

    bool getBool(const String& name, bool defaultValue) const override;
    std::int32_t getInt(const String& name, std::int32_t defaultValue) const override;
    std::int64_t getInt64(const String& name, std::int64_t defaultValue) const override;
    float getFloat(const String& name, float defaultValue) const override;
    double getDouble(const String& name, double defaultValue) const override;
    String getString(const String& name, const String& defaultValue) const override;
    P<IBase> getObject(const String& name, const P<IBase>& defaultValue) const override;

    bool setValue(const String& name, const P<IBase>& value) override;
    bool setBool(const String& name, bool value) override;
    bool setInt(const String& name, std::int32_t value) override;
    bool setInt64(const String& name, std::int64_t value) override;
    bool setFloat(const String& name, float value) override;
    bool setDouble(const String& name, double value) override;
    bool setString(const String& name, const String& value) override;
    bool removeValue(const String& name) override;
    void removeAll() override;
    void assign(const IValueList& other) override;

    P<IConstEnum> getNames() const override;
    std::int32_t getCount() const override { return static_cast<std::int32_t>(m_names.size()); }

private:
    [[noreturn]] void throwReadOnly() const;

    TSimpleArray<P<CArg>> m_args;
    std::vector<String> m_names;
};

}  // namespace fenn

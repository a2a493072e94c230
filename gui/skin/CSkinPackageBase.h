#pragma once

#include <optional>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/String.h"
#include "gui/CColor.h"
#include "gui/skin/ILayer.h"

namespace tinyxml2 {
class XMLElement;
}

namespace fenn::gui::skin {

// The XML reading helpers of a skin package: element and attribute access
// with the package's error texts (CParseError naming the file and line).
// Element names and keyword values are compared lower-cased. Used while a
// package is parsed; GUI thread.
class CSkinPackageBase : public CObject
{
public:
    explicit CSkinPackageBase(String fileName) : m_fileName(std::move(fileName)) {}

    const String& getFileName() const { return m_fileName; }

    [[noreturn]] void throwSyntaxError(int line) const;
    [[noreturn]] void throwDefinedTwice(const tinyxml2::XMLElement& element, const String& type,
                                        const String& id) const;
    [[noreturn]] void throwMissingElement(const tinyxml2::XMLElement& parent, const String& name) const;
    [[noreturn]] void throwMissingAttribute(const tinyxml2::XMLElement& element, const String& name) const;
    [[noreturn]] void throwInvalidAttribute(const tinyxml2::XMLElement& element, const String& name) const;
    [[noreturn]] void throwUnexpectedElement(const tinyxml2::XMLElement& element) const;

    // The element's name in lower case.
    static String elementName(const tinyxml2::XMLElement& element);
    // The attribute's text (its name compared lower-cased), or none.
    static std::optional<String> findAttribute(const tinyxml2::XMLElement& element, const char* name);
    String getAttribute(const tinyxml2::XMLElement& element, const char* name) const;
    String getAttribute(const tinyxml2::XMLElement& element, const char* name, const String& fallback) const;
    int getInt(const tinyxml2::XMLElement& element, const char* name, int fallback) const;
    double getDouble(const tinyxml2::XMLElement& element, const char* name, double fallback) const;
    bool getBool(const tinyxml2::XMLElement& element, const char* name, bool fallback) const;
    std::optional<bool> findBool(const tinyxml2::XMLElement& element, const char* name) const;
    std::optional<CColor> findColor(const tinyxml2::XMLElement& element, const char* name) const;
    // left, top, right and bottom attributes, each 0 when absent.
    SkinMargins getMargins(const tinyxml2::XMLElement& element, bool allowNegative) const;
    // "a,b,c,d" as margins; invalid text is an error of the named attribute.
    SkinMargins parseMarginList(const tinyxml2::XMLElement& element, const char* name) const;
    // The items of a comma-separated list, trimmed of blanks, tabs and line ends.
    static std::vector<String> splitList(const String& list);
    // The first child element of that name (lower-cased), or null.
    static const tinyxml2::XMLElement* findChild(const tinyxml2::XMLElement& element, const char* name);

private:
    String location(const char* textKey, const char* defaultText, int line) const;

    String m_fileName;
};

}  // namespace fenn::gui::skin

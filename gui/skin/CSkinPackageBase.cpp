#include "gui/skin/CSkinPackageBase.h"

#include <tinyxml2.h>

#include <cctype>
#include <charconv>
#include <cstring>

#include "foundation/CError.h"
#include "foundation/IStringLocalizer.h"
#include "gui/skin/SkinTexts.h"

namespace fenn::gui::skin {

namespace {

bool namesMatch(const char* attribute, const char* name)
{
    for (; *attribute && *name; ++attribute, ++name) {
        if (std::tolower(static_cast<unsigned char>(*attribute)) != std::tolower(static_cast<unsigned char>(*name)))
            return false;
    }
    return *attribute == 0 && *name == 0;
}

std::string trimmed(const String& text)
{
    std::string bytes = text.toStdString();
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!bytes.empty() && isSpace(bytes.back())) bytes.pop_back();
    std::size_t start = 0;
    while (start < bytes.size() && isSpace(bytes[start])) ++start;
    return bytes.substr(start);
}

std::optional<int> parseInt(const std::string& text)
{
    int value = 0;
    const char* begin = text.data();
    if (!text.empty() && text[0] == '+') ++begin;
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || begin == end) return std::nullopt;
    return value;
}

}  // namespace

String CSkinPackageBase::location(const char* textKey, const char* defaultText, int line) const
{
    return localize(TextKey{textKey, defaultText}).replace("%FILE%", m_fileName).replace("%LINE%", fromInt(line));
}

void CSkinPackageBase::throwSyntaxError(int line) const
{
    throw CParseError(location(texts::xmlSyntaxError.key, texts::xmlSyntaxError.defaultText, line));
}

void CSkinPackageBase::throwDefinedTwice(const tinyxml2::XMLElement& element, const String& type,
                                         const String& id) const
{
    throw CParseError(
        location(texts::xmlObjectDefinedTwice.key, texts::xmlObjectDefinedTwice.defaultText, element.GetLineNum())
            .replace("%TYPE%", type)
            .replace("%ID%", id));
}

void CSkinPackageBase::throwMissingElement(const tinyxml2::XMLElement& parent, const String& name) const
{
    throw CParseError(location(texts::xmlMissingElement.key, texts::xmlMissingElement.defaultText, parent.GetLineNum())
                          .replace("%NAME%", name));
}

void CSkinPackageBase::throwMissingAttribute(const tinyxml2::XMLElement& element, const String& name) const
{
    throw CParseError(
        location(texts::xmlMissingAttribute.key, texts::xmlMissingAttribute.defaultText, element.GetLineNum())
            .replace("%ELEMENT%", elementName(element))
            .replace("%NAME%", name));
}

void CSkinPackageBase::throwInvalidAttribute(const tinyxml2::XMLElement& element, const String& name) const
{
    throw CParseError(
        location(texts::xmlInvalidAttribute.key, texts::xmlInvalidAttribute.defaultText, element.GetLineNum())
            .replace("%ELEMENT%", elementName(element))
            .replace("%NAME%", name));
}

void CSkinPackageBase::throwUnexpectedElement(const tinyxml2::XMLElement& element) const
{
    throw CParseError(
        location(texts::xmlUnexpectedElement.key, texts::xmlUnexpectedElement.defaultText, element.GetLineNum())
            .replace("%NAME%", elementName(element)));
}

String CSkinPackageBase::elementName(const tinyxml2::XMLElement& element)
{
    return String::copyOf(element.Name()).toLowerCase();
}

std::optional<String> CSkinPackageBase::findAttribute(const tinyxml2::XMLElement& element, const char* name)
{
    for (const tinyxml2::XMLAttribute* attribute = element.FirstAttribute(); attribute; attribute = attribute->Next()) {
        if (namesMatch(attribute->Name(), name)) return String::copyOf(attribute->Value());
    }
    return std::nullopt;
}

String CSkinPackageBase::getAttribute(const tinyxml2::XMLElement& element, const char* name) const
{
    const std::optional<String> value = findAttribute(element, name);
    if (!value) throwMissingAttribute(element, name);
    return *value;
}

String CSkinPackageBase::getAttribute(const tinyxml2::XMLElement& element, const char* name,
                                      const String& fallback) const
{
    return findAttribute(element, name).value_or(fallback);
}

int CSkinPackageBase::getInt(const tinyxml2::XMLElement& element, const char* name, int fallback) const
{
    const std::optional<String> value = findAttribute(element, name);
    if (!value) return fallback;
    const std::optional<int> number = parseInt(trimmed(*value));
    if (!number) throwInvalidAttribute(element, name);
    return *number;
}

double CSkinPackageBase::getDouble(const tinyxml2::XMLElement& element, const char* name, double fallback) const
{
    const std::optional<String> value = findAttribute(element, name);
    if (!value) return fallback;
    // Skin files use "." whatever the user's locale.
    const std::string text = trimmed(*value);
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) throwInvalidAttribute(element, name);
    return number;
}

std::optional<bool> CSkinPackageBase::findBool(const tinyxml2::XMLElement& element, const char* name) const
{
    const std::optional<String> value = findAttribute(element, name);
    if (!value) return std::nullopt;
    const String text = String::copyOf(trimmed(*value)).toLowerCase();
    if (text == "true" || text == "1" || text == "yes") return true;
    if (text == "false" || text == "0" || text == "no") return false;
    throwInvalidAttribute(element, name);
}

bool CSkinPackageBase::getBool(const tinyxml2::XMLElement& element, const char* name, bool fallback) const
{
    return findBool(element, name).value_or(fallback);
}

std::optional<CColor> CSkinPackageBase::findColor(const tinyxml2::XMLElement& element, const char* name) const
{
    const std::optional<String> value = findAttribute(element, name);
    if (!value) return std::nullopt;
    const std::string text = trimmed(*value);
    if (text.size() != 7 || text[0] != '#') throwInvalidAttribute(element, name);
    for (std::size_t index = 1; index < text.size(); ++index) {
        if (!std::isxdigit(static_cast<unsigned char>(text[index]))) throwInvalidAttribute(element, name);
    }
    const auto hex = [&](std::size_t at) {
        return static_cast<std::uint8_t>(std::stoi(text.substr(at, 2), nullptr, 16));
    };
    return CColor(hex(1), hex(3), hex(5));
}

SkinMargins CSkinPackageBase::getMargins(const tinyxml2::XMLElement& element, bool allowNegative) const
{
    SkinMargins margins{getInt(element, "left", 0), getInt(element, "top", 0), getInt(element, "right", 0),
                        getInt(element, "bottom", 0)};
    if (!allowNegative) {
        if (margins.left < 0) throwInvalidAttribute(element, "left");
        if (margins.top < 0) throwInvalidAttribute(element, "top");
        if (margins.right < 0) throwInvalidAttribute(element, "right");
        if (margins.bottom < 0) throwInvalidAttribute(element, "bottom");
    }
    return margins;
}

SkinMargins CSkinPackageBase::parseMarginList(const tinyxml2::XMLElement& element, const char* name) const
{
    const std::vector<String> items = splitList(getAttribute(element, name));
    if (items.size() != 4) throwInvalidAttribute(element, name);
    int values[4] = {};
    for (std::size_t index = 0; index < 4; ++index) {
        const std::optional<int> value = parseInt(items[index].toStdString());
        if (!value || *value < 0) throwInvalidAttribute(element, name);
        values[index] = *value;
    }
    return {values[0], values[1], values[2], values[3]};
}

std::vector<String> CSkinPackageBase::splitList(const String& list)
{
    std::vector<String> items;
    for (const String& item : list.split(",")) items.push_back(String::copyOf(trimmed(item)));
    return items;
}

const tinyxml2::XMLElement* CSkinPackageBase::findChild(const tinyxml2::XMLElement& element, const char* name)
{
    for (const tinyxml2::XMLElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (elementName(*child) == name) return child;
    }
    return nullptr;
}

}  // namespace fenn::gui::skin

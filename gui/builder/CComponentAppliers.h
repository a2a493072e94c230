#pragma once

#include <functional>
#include <optional>

#include "foundation/CURI.h"
#include "foundation/String.h"
#include "gui/CColor.h"
#include "gui/CWindow.h"
#include "gui/builder/CXMLIncludeWalker.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// Reads the attributes of one layout file element, with the element's file
// and line in every error. Names are case-sensitive as XML has them; values
// that are keywords are compared in lower case by the callers. A borrowed
// view of the element; GUI thread.
class CElementReader
{
public:
    explicit CElementReader(const CLayoutElement& element) : m_element(element) {}

    const CLayoutElement& getElement() const { return m_element; }
    // The element's name in lower case: "button" for <BUTTON>.
    String getName() const;
    bool has(const char* name) const;
    // The value as written; empty when absent.
    String get(const char* name) const;
    String getLower(const char* name) const { return get(name).trim().toLowerCase(); }
    // Throws CParseError (MissingAttribute) when absent.
    String require(const char* name) const;
    // Numbers in layout files are pixels, weights, percents and positions;
    // anything beyond ten million is a mistake or an attack, and refusing it
    // keeps every sum of sizes inside an int.
    static constexpr long long kMaxLayoutNumber = 10'000'000;
    // Numbers and truth values; an absent attribute gives the fallback, a
    // malformed, infinite or too large one throws CParseError
    // (InvalidAttribute).
    int getInt(const char* name, int fallback) const;
    double getDouble(const char* name, double fallback) const;
    bool getBool(const char* name, bool fallback) const;
    // "#RRGGBB"; none when absent, CParseError from CColor::parse when malformed.
    std::optional<CColor> getColor(const char* name) const;
    // The text rule: the default from textName, looked up under the key in
    // keyName when that is present, with "\r\n" made "\n".
    String getText(const char* keyName = "textid", const char* textName = "text") const;
    // The attribute as a URI resolved against the element's file.
    CURI getURI(const char* name) const;
    // Every attribute as a string value (name and value as written): the
    // parameters the window systems get.
    P<CValueList> getParameters() const;

    // Errors about this element.
    [[noreturn]] void throwInvalid(const char* name) const;
    [[noreturn]] void throwUnexpected() const;

private:
    CLayoutElement m_element;
};

// Decodes an image file; the builder caches what it decodes.
using ImageLoader = std::function<P<IImage>(const CURI& uri)>;

// Applies the type's own attributes ("stepsize" of a slider, "scroll" of a
// scroll panel...) to a window made for that type. Each type has an entry
// in a table keyed by the lower-case element name, which casts the window
// to the plain widget class (skinned windows derive from them); a window
// that is no such class, and a type without an entry, are left as they are.
// Attributes without a setter of the widget stay in the window's
// properties, where every attribute lands anyway.
void applyTypeAttributes(const String& type, CWindow& window, const CElementReader& reader, const ImageLoader& images);

}  // namespace fenn::gui

#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <tinyxml2.h>

#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "foundation/TextKey.h"

namespace fenn::gui {

// One parsed layout file: the XML tree and the URI it was read from, which
// relative URIs in it (includes, images) are resolved against. Owned by the
// document cache; elements handed out point into it and live as long as it.
// GUI thread.
class CLayoutDocument : public CObject
{
public:
    explicit CLayoutDocument(const CURI& uri) : m_uri(uri) {}

    const CURI& getURI() const { return m_uri; }
    tinyxml2::XMLDocument& getXML() { return m_xml; }
    const tinyxml2::XMLElement* getRoot() const { return m_xml.RootElement(); }

private:
    CURI m_uri;
    tinyxml2::XMLDocument m_xml;
};

// The layout files parsed so far, keyed by the text of their URI: each file
// is read and parsed once, however often it is built or included. Files are
// read through the stream manager and parsed from memory. Owned by the
// builder; GUI thread.
class CLayoutDocumentCache : public CObject
{
public:
    // Layout files are small; a larger one is refused before it is read in full.
    static constexpr std::int64_t kMaxFileBytes = 8 * 1024 * 1024;

    // The parsed file at uri, read now if it was not before. A file that is
    // not XML throws CParseError (XMLParseError with the file and line);
    // stream failures throw their own errors.
    P<CLayoutDocument> get(const CURI& uri);
    bool contains(const CURI& uri) const;
    void clear();
    int getCount() const { return static_cast<int>(m_documents.size()); }

    // A file parses once, but a walk visits it at every include: a file
    // that includes another many times, which does the same, would make a
    // walk of a few small files endless. One load or build expands at most
    // this many includes.
    static constexpr int kMaxIncludeExpansions = 10000;
    // Counts an include that a walk enters; past the limit throws CError
    // (TooManyIncludes) with the including file and line.
    void countIncludeExpansion(const CURI& file, int line);
    void resetIncludeExpansions() { m_includeExpansions = 0; }

private:
    std::map<std::string, P<CLayoutDocument>> m_documents;
    int m_includeExpansions = 0;
};

// "file" and "line" of an error in a layout file, shared by the parts of the
// builder: the localised text of key with %FILE% and %LINE% replaced (line
// 0 or less becomes "?").
String layoutErrorText(const TextKey& key, const CURI& file, int line);

}  // namespace fenn::gui

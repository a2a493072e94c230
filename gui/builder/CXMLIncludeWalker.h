#pragma once

#include <vector>

#include <tinyxml2.h>

#include "foundation/CURI.h"
#include "foundation/P.h"
#include "gui/builder/CLayoutDocuments.h"

namespace fenn::gui {

// An element of a layout file with the file it stands in.
struct CLayoutElement
{
    const tinyxml2::XMLElement* element = nullptr;
    // The document that holds element (kept alive while the element is used).
    P<CLayoutDocument> document;

    explicit operator bool() const { return element != nullptr; }
    const CURI& getURI() const { return document->getURI(); }
    int getLine() const { return element->GetLineNum(); }
};

// Walks the child elements of one element in document order, where an
// "include" element (any case) stands for the children of the root of the
// file its "uri" attribute names, resolved against the including file. An
// include may stand anywhere and may itself include; the walker keeps the
// suspended positions of the including files on a stack and returns to them
// when an included file's children are done. Included files are read
// through the document cache, so each is parsed once.
//
// A file that includes itself, directly or through others, throws a
// CError (IncludeCycle); includes nested deeper than kMaxIncludeDepth throw
// IncludeTooDeep; an include without "uri" throws CParseError
// (MissingAttribute with the include's line). Borrows the cache, which must
// outlive it. GUI thread.
class CXMLIncludeWalker
{
public:
    static constexpr int kMaxIncludeDepth = 16;

    // Walks the children of parent. The chain holds the URIs of the files
    // whose includes led to parent's file (for the cycle check); empty for a
    // file loaded directly.
    CXMLIncludeWalker(CLayoutDocumentCache& cache, const CLayoutElement& parent, std::vector<String> includeChain = {});

    // The next element that is not an include; a false element at the end.
    CLayoutElement next();
    // The include chain of the file of the element last returned: pass it to
    // a walker over that element's children.
    std::vector<String> getIncludeChain() const;

private:
    struct Position
    {
        const tinyxml2::XMLElement* next = nullptr;
        P<CLayoutDocument> document;
    };

    void enterInclude(const CLayoutElement& include);

    CLayoutDocumentCache& m_cache;
    std::vector<String> m_baseChain;
    // The file walked now and, below it, the files that include it.
    std::vector<Position> m_stack;
};

}  // namespace fenn::gui

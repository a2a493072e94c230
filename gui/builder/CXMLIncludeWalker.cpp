#include "gui/builder/CXMLIncludeWalker.h"

#include "foundation/CError.h"
#include "foundation/IStringLocalizer.h"
#include "gui/builder/BuilderTexts.h"

namespace fenn::gui {

namespace {

bool isInclude(const tinyxml2::XMLElement& element)
{
    return String::copyOf(element.Name()).equalsNoCase("include");
}

}  // namespace

CXMLIncludeWalker::CXMLIncludeWalker(CLayoutDocumentCache& cache, const CLayoutElement& parent,
                                     std::vector<String> includeChain)
    : m_cache(cache), m_baseChain(std::move(includeChain))
{
    m_stack.push_back({parent.element->FirstChildElement(), parent.document});
}

CLayoutElement CXMLIncludeWalker::next()
{
    while (!m_stack.empty()) {
        Position& top = m_stack.back();
        if (!top.next) {
            m_stack.pop_back();
            continue;
        }
        const CLayoutElement current{top.next, top.document};
        top.next = top.next->NextSiblingElement();
        if (!isInclude(*current.element)) return current;
        enterInclude(current);
    }
    return {};
}

std::vector<String> CXMLIncludeWalker::getIncludeChain() const
{
    std::vector<String> chain = m_baseChain;
    // The bottom of the stack is the walked element's own file; each file
    // above it was included by the one below.
    for (std::size_t index = 1; index < m_stack.size(); ++index) {
        chain.push_back(m_stack[index - 1].document->getURI().getURI());
    }
    return chain;
}

void CXMLIncludeWalker::enterInclude(const CLayoutElement& include)
{
    const char* uriText = include.element->Attribute("uri");
    if (!uriText) {
        throw CParseError(layoutErrorText(builder::texts::missingAttribute, include.getURI(), include.getLine())
                              .replace("%NAME%", "uri"));
    }
    const std::vector<String> chain = getIncludeChain();
    if (static_cast<int>(chain.size()) + 1 > kMaxIncludeDepth) {
        throw CError(String(), layoutErrorText(builder::texts::includeTooDeep, include.getURI(), include.getLine()));
    }
    CURI target(String::copyOf(uriText));
    target.resolve(include.getURI());
    const String targetText = target.getURI();
    bool cycle = targetText == include.getURI().getURI();
    for (const String& including : chain) cycle = cycle || including == targetText;
    if (cycle) throw CError(String(), layoutErrorText(builder::texts::includeCycle, target, include.getLine()));
    m_cache.countIncludeExpansion(include.getURI(), include.getLine());

    const P<CLayoutDocument> document = m_cache.get(target);
    m_stack.push_back({document->getRoot()->FirstChildElement(), document});
}

}  // namespace fenn::gui

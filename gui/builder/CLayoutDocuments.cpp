#include "gui/builder/CLayoutDocuments.h"

#include <vector>

#include "foundation/CError.h"
#include "foundation/CStreamManager.h"
#include "foundation/IStringLocalizer.h"
#include "gui/builder/BuilderTexts.h"

namespace fenn::gui {

namespace {

constexpr std::int32_t kReadPiece = 64 * 1024;

std::vector<char> readAll(const CURI& uri)
{
    const P<IInStream> stream = CStreamManager::getInstance()->openInStream(uri);
    std::vector<char> bytes;
    for (;;) {
        const std::size_t filled = bytes.size();
        bytes.resize(filled + kReadPiece);
        const std::int32_t got = stream->readSome(bytes.data() + filled, kReadPiece);
        bytes.resize(filled + static_cast<std::size_t>(got > 0 ? got : 0));
        if (got <= 0) return bytes;
        if (static_cast<std::int64_t>(bytes.size()) > CLayoutDocumentCache::kMaxFileBytes) {
            throw CError(String(), layoutErrorText(builder::texts::fileTooLarge, uri, 0));
        }
    }
}

}  // namespace

void CLayoutDocumentCache::countIncludeExpansion(const CURI& file, int line)
{
    if (++m_includeExpansions > kMaxIncludeExpansions)
        throw CError(String(), layoutErrorText(builder::texts::tooManyIncludes, file, line));
}

String layoutErrorText(const TextKey& key, const CURI& file, int line)
{
    return localize(key).replace("%FILE%", file.getURI()).replace("%LINE%", line > 0 ? fromInt(line) : String("?"));
}

P<CLayoutDocument> CLayoutDocumentCache::get(const CURI& uri)
{
    const std::string key = uri.getURI().toStdString();
    const auto found = m_documents.find(key);
    if (found != m_documents.end()) return found->second;

    const std::vector<char> bytes = readAll(uri);
    auto document = make<CLayoutDocument>(uri);
    if (document->getXML().Parse(bytes.data(), bytes.size()) != tinyxml2::XML_SUCCESS || !document->getRoot()) {
        throw CParseError(layoutErrorText(builder::texts::xmlParseError, uri, document->getXML().ErrorLineNum()));
    }
    m_documents.emplace(key, document);
    return document;
}

bool CLayoutDocumentCache::contains(const CURI& uri) const
{
    return m_documents.count(uri.getURI().toStdString()) != 0;
}

void CLayoutDocumentCache::clear()
{
    m_documents.clear();
}

}  // namespace fenn::gui

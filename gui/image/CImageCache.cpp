#include "gui/image/CImageCache.h"

#include "foundation/CObjectError.h"
#include "foundation/CReferencable.h"

namespace fenn::gui {

namespace {

std::int64_t pixelBytes(const IImage& image)
{
    return static_cast<std::int64_t>(image.getStride()) * image.getHeight();
}

// Whether a pointer besides the cache's own holds the image. An image whose
// count cannot be seen counts as unused: dropping it only costs a decode.
bool isHeldElsewhere(const IImage& image)
{
    const auto* counted = dynamic_cast<const CReferencable*>(&image);
    return counted != nullptr && counted->getReferenceCount() > 1;
}

}  // namespace

CImageCache::CImageCache(std::int64_t budgetBytes) : m_budget(0)
{
    setBudget(budgetBytes);
}

P<IImage> CImageCache::get(const String& id)
{
    const auto found = m_index.find(id);
    if (found == m_index.end()) return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return found->second->image;
}

void CImageCache::put(const String& id, P<IImage> image)
{
    if (!image) throw CInvalidArgError(this, "put", "image");
    remove(id);
    const std::int64_t bytes = pixelBytes(*image);
    m_entries.push_front({id, std::move(image), bytes});
    m_index.emplace(id, m_entries.begin());
    m_usedBytes += bytes;
    trim();
}

bool CImageCache::contains(const String& id) const
{
    return m_index.find(id) != m_index.end();
}

bool CImageCache::remove(const String& id)
{
    const auto found = m_index.find(id);
    if (found == m_index.end()) return false;
    erase(found->second);
    return true;
}

void CImageCache::clear()
{
    m_index.clear();
    m_entries.clear();
    m_usedBytes = 0;
}

void CImageCache::trim()
{
    auto entry = m_entries.end();
    while (m_usedBytes > m_budget && entry != m_entries.begin()) {
        --entry;
        if (isHeldElsewhere(*entry->image)) continue;
        auto next = std::next(entry);
        erase(entry);
        entry = next;
    }
}

void CImageCache::setBudget(std::int64_t budgetBytes)
{
    if (budgetBytes < 0) throw CInvalidArgError(this, "setBudget", "budgetBytes");
    m_budget = budgetBytes;
    trim();
}

void CImageCache::erase(EntryList::iterator entry)
{
    m_usedBytes -= entry->bytes;
    m_index.erase(entry->id);
    m_entries.erase(entry);
}

}  // namespace fenn::gui

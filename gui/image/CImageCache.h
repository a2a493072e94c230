#pragma once

#include <cstdint>
#include <list>
#include <unordered_map>

#include "foundation/CObject.h"
#include "foundation/P.h"
#include "foundation/String.h"
#include "gui/image/IImage.h"

namespace fenn::gui {

// Decoded images by a string id (normally the URI they came from), so that
// a skin that shows the same bitmap in many places decodes it once. The
// pixels of all entries together are kept under a byte budget: when a put
// or a smaller budget goes over it, the least recently used entries that
// nobody else holds are dropped until it fits again. Entries still held
// elsewhere stay (dropping them would free nothing), so the cache may sit
// above its budget while they are in use; trim evicts again later. Owned by
// the skin or the application; GUI thread only, no lock.
class CImageCache : public CObject
{
public:
    static constexpr std::int64_t kDefaultBudget = 64LL * 1024 * 1024;

    explicit CImageCache(std::int64_t budgetBytes = kDefaultBudget);

    // The image stored under id, which becomes the most recently used; null
    // when there is none.
    P<IImage> get(const String& id);
    // Stores the image (replacing what id held) as the most recently used,
    // then evicts. A null image throws CInvalidArgError.
    void put(const String& id, P<IImage> image);
    // Whether id is stored, without counting as a use.
    bool contains(const String& id) const;
    // Drops one entry; false when id was not stored.
    bool remove(const String& id);
    void clear();
    // Evicts down to the budget as far as unused entries allow.
    void trim();

    // A negative budget throws CInvalidArgError; a smaller one evicts.
    void setBudget(std::int64_t budgetBytes);
    std::int64_t getBudget() const { return m_budget; }
    // The pixel bytes of all entries.
    std::int64_t getUsedBytes() const { return m_usedBytes; }
    int getCount() const { return static_cast<int>(m_entries.size()); }

private:
    struct Entry
    {
        String id;
        P<IImage> image;
        std::int64_t bytes = 0;
    };
    using EntryList = std::list<Entry>;
    struct IdHash
    {
        std::size_t operator()(const String& id) const { return id.hash(); }
    };

    void erase(EntryList::iterator entry);

    // Most recently used first.
    EntryList m_entries;
    std::unordered_map<String, EntryList::iterator, IdHash> m_index;
    std::int64_t m_budget;
    std::int64_t m_usedBytes = 0;
};

}  // namespace fenn::gui

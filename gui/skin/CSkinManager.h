#pragma once

#include <vector>

#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "gui/image/CImageCache.h"
#include "gui/skin/CSkinPackage.h"

namespace fenn::gui::skin {

// The skin packages the program knows, the current one and its default
// skin set. The "skin" window system asks the process-wide instance for
// the skins of the windows it makes. GUI thread.
class ISkinManager : public virtual IBase
{
public:
    // Parses the package in a folder (a file URI or a path) and adds it;
    // the first one added becomes current. Parse errors are thrown.
    virtual P<ISkinPackage> addPackage(const CURI& folder) = 0;
    virtual std::vector<P<ISkinPackage>> getPackages() const = 0;
    // Makes the package whose folder or skininfo name is id current; false
    // when there is none.
    virtual bool setCurrentPackage(const String& id) = 0;
    virtual P<ISkinPackage> getCurrentPackage() const = 0;
    // The current package's skin set with the id (empty: the default set),
    // or null.
    virtual P<ISkinSet> getSkinSet(const String& id) const = 0;
    virtual String getDefaultSkinSetId() const = 0;
    // Empty: the current package's first set.
    virtual void setDefaultSkinSetId(const String& id) = 0;
};

class CSkinManager : public CObject, public virtual ISkinManager
{
public:
    CSkinManager();

    // The process-wide instance.
    static P<CSkinManager> getInstance();

    // Adds a package that is already parsed.
    void addParsedPackage(const P<ISkinPackage>& package);
    // Forgets every package (the window system's package stopping).
    void clear();
    const P<CImageCache>& getImageCache() const { return m_cache; }

    P<ISkinPackage> addPackage(const CURI& folder) override;
    std::vector<P<ISkinPackage>> getPackages() const override { return m_packages; }
    bool setCurrentPackage(const String& id) override;
    P<ISkinPackage> getCurrentPackage() const override { return m_current; }
    P<ISkinSet> getSkinSet(const String& id) const override;
    String getDefaultSkinSetId() const override { return m_defaultSet; }
    void setDefaultSkinSetId(const String& id) override { m_defaultSet = id; }

private:
    P<CImageCache> m_cache;
    std::vector<P<ISkinPackage>> m_packages;
    P<ISkinPackage> m_current;
    String m_defaultSet;
};

}  // namespace fenn::gui::skin

#pragma once

#include <map>
#include <string>
#include <vector>

#include "gui/image/CImageCache.h"
#include "gui/skin/CLayer.h"
#include "gui/skin/CSkin.h"
#include "gui/skin/CSkinPackageBase.h"
#include "gui/skin/CSkinPackageInfo.h"
#include "gui/skin/CSkinSet.h"

namespace tinyxml2 {
class XMLElement;
}

namespace fenn::gui::skin {

// One skin package: a folder with skin.xml and its images, parsed whole when
// it is made. Immutable afterwards and shared by every window that uses its
// skins. GUI thread.
class ISkinPackage : public virtual IBase
{
public:
    // The folder's path.
    virtual String getFolder() const = 0;
    virtual P<ISkinPackageInfo> getInfo() const = 0;
    // The skin set with the id, or null.
    virtual P<ISkinSet> getSkinSet(const String& id) const = 0;
    // The ids of its skin sets in document order.
    virtual std::vector<String> getSkinSetIds() const = 0;
};

class CSkinPackage : public CSkinPackageBase, public virtual ISkinPackage
{
public:
    // Parses folder/skin.xml; images go through cache (a package of its own
    // when none is given). A file that cannot be read or parsed throws
    // CParseError with the package's texts.
    explicit CSkinPackage(const String& folder, P<CImageCache> cache = nullptr);
    // Parses xml as if it were folder/skin.xml (for tests and tools).
    CSkinPackage(const String& folder, const std::string& xml, P<CImageCache> cache = nullptr);

    String getFolder() const override { return m_folder; }
    P<ISkinPackageInfo> getInfo() const override { return m_info; }
    P<ISkinSet> getSkinSet(const String& id) const override;
    std::vector<String> getSkinSetIds() const override { return m_setIds; }

private:
    void parse(const std::string& xml);
    void parseSkinSet(const tinyxml2::XMLElement& element);
    P<ISkin> parseSkin(const tinyxml2::XMLElement& element);
    void parseSliderBar(const tinyxml2::XMLElement& element, CSliderBarSkin& skin);
    void parseTabView(const tinyxml2::XMLElement& element, CTabViewSkin& skin);
    // Reads the layer children of element into skin; other children are
    // passed to other (which returns false for what it does not know).
    template <class Other> void parseLayers(const tinyxml2::XMLElement& element, CSkin& skin, Other other);
    void parseLayer(const tinyxml2::XMLElement& element, CSkin& skin, int position);
    P<CLayer> makeAnimationLayer(const tinyxml2::XMLElement& element, const LayerGeometry& geometry);
    P<CLayer> makeTextLayer(const tinyxml2::XMLElement& element, const LayerGeometry& geometry);
    // The image at a path inside the package, through the cache; null when
    // the file is absent.
    P<IImage> loadImage(const String& relativePath) const;

    String m_folder;
    P<CImageCache> m_cache;
    P<ISkinPackageInfo> m_info;
    std::map<std::string, P<CSkinSet>> m_sets;
    std::vector<String> m_setIds;
};

}  // namespace fenn::gui::skin

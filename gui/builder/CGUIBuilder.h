#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "foundation/CObject.h"
#include "gui/CFrameWindow.h"
#include "gui/builder/CLayoutDocuments.h"
#include "gui/builder/CXMLIncludeWalker.h"
#include "gui/builder/IGUIBuilder.h"
#include "gui/image/CImageCache.h"
#include "gui/layout/CGrowLayoutSizeLink.h"
#include "gui/widgets/CButton.h"

namespace fenn::gui {

class CElementReader;

// The layout file builder. Parsed files stay in a cache keyed by their URI,
// so building a dialog again reads no file. A build makes the component's
// windows through the window system each element names (or inherits, or
// the default one), adds them to their layouts, and records the parts with
// an id in four tables that the next build clears: windows, buttons, layout
// items and size links. The tables hold their entries strongly until then.
//
// When a build fails half-way, what it made so far is held only by the
// parents it was added to and by the tables, so it goes with them. Owned by
// the application or a dialog; GUI thread only.
class CGUIBuilder : public CObject, public virtual IGUIBuilder
{
public:
    CGUIBuilder();
    ~CGUIBuilder() override;

    void setDefaultWindowSystem(const P<IWindowSystem>& system) override;
    P<IWindowSystem> getDefaultWindowSystem() const override;
    void loadFile(const CURI& uri) override;
    P<ILayoutItem> build(const String& id, CWindow* parentWindow, ILayout* parentLayoutGroup) override;
    void clearDocuments() override;

    // The parts of the last build by id (case-sensitive), or null.
    P<CWindow> getWindow(const String& id) const;
    P<CButton> getButton(const String& id) const;
    // Windows, layout groups (also the inner group of a padded group, under
    // its "innerid") and spaces with an id.
    P<ILayoutItem> getLayoutItem(const String& id) const;
    // The size links of the last build by name ("sizelink", "widthlink" and
    // "heightlink" share one table), or null.
    P<CGrowLayoutSizeLink> getSizeLink(const String& name) const;

    // The number of files parsed and kept (loaded files and their includes).
    int getDocumentCount() const { return m_documents->getCount(); }

private:
    struct Context;

    void clearTables();
    void checkTree(const CLayoutElement& element, const std::vector<String>& chain);
    P<ILayoutItem> buildElement(const CLayoutElement& element, const std::vector<String>& chain,
                                const Context& context);
    P<ILayoutItem> buildGroup(const CElementReader& reader, const P<ILayout>& layout, const Context& context,
                              Context& childContext);
    P<ILayoutItem> buildPaddedGroup(const CElementReader& reader, const P<ILayout>& layout, const Context& context,
                                    Context& childContext);
    P<ILayoutItem> buildSpace(const CElementReader& reader, const Context& context);
    P<CWindow> buildComponent(const CElementReader& reader, const P<ILayout>& layout, const Context& context,
                              Context& childContext);
    void buildChildren(const CLayoutElement& element, const std::vector<String>& chain, const Context& childContext,
                       CWindow* component);
    void applySizeLimit(const CElementReader& reader, CWindow& component);
    void applyTypeChild(const CLayoutElement& child, const std::vector<String>& chain, CWindow& component,
                        const Context& childContext);
    // Makes a page or pane, hands it to attach, then builds its children.
    void buildPane(const CLayoutElement& child, const std::vector<String>& chain, const Context& childContext,
                   const std::function<void(const P<CWindow>&)>& attach);
    void applyShape(const CElementReader& reader, CFrameWindow& frame);

    // Placing and recording parts.
    CLayoutParams readLayoutParams(const CElementReader& reader);
    P<CGrowLayoutSizeLink> sizeLink(const String& name);
    void addToParent(const P<ILayoutItem>& item, const CLayoutParams& params, const Context& context);
    void registerItem(const String& id, const P<ILayoutItem>& item);
    // The system with the id; the empty id is the default one.
    P<IWindowSystem> resolveWindowSystem(const String& id) const;
    P<IImage> loadImage(const CURI& uri);

    P<IWindowSystem> m_defaultSystem;
    P<CLayoutDocumentCache> m_documents;
    std::vector<P<CLayoutDocument>> m_loaded;
    P<CImageCache> m_images;
    std::map<std::string, P<CWindow>> m_windows;
    std::map<std::string, P<CButton>> m_buttons;
    std::map<std::string, P<ILayoutItem>> m_layoutItems;
    std::map<std::string, P<CGrowLayoutSizeLink>> m_sizeLinks;
};

}  // namespace fenn::gui

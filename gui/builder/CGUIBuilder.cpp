#include "gui/builder/CGUIBuilder.h"

#include "foundation/CError.h"
#include "foundation/IStringLocalizer.h"
#include "gui/CFrameWindow.h"
#include "gui/CStyle.h"
#include "gui/builder/BuilderTexts.h"
#include "gui/builder/CComponentAppliers.h"
#include "gui/image/CImageDecoderRegistry.h"
#include "gui/layout/CFixedLayoutItem.h"
#include "gui/layout/CGrowLayout.h"
#include "gui/layout/CLayerLayout.h"
#include "gui/layout/CTextGUISize.h"
#include "gui/widgets/CDropList.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSplitPanel.h"
#include "gui/widgets/CTabView.h"

namespace fenn::gui {

namespace {

// The outer layout of a "paddedlayoutgroup": its one item (the inner group)
// over the whole room less a margin, which is asked afresh from its size at
// each layout pass, so a margin given as text follows the font.
class CPaddedLayout : public CLayerLayout
{
public:
    explicit CPaddedLayout(const P<IGUISize>& margin) : m_margin(margin) {}

    CSize getSize(SizeType type) override
    {
        updateMargins();
        return CLayerLayout::getSize(type);
    }

    void doLayout() override
    {
        updateMargins();
        CLayerLayout::doLayout();
    }

private:
    void updateMargins()
    {
        const CSize margin = m_margin->getSize();
        setMargins(margin.width, margin.height, margin.width, margin.height);
    }

    P<IGUISize> m_margin;
};

// The children that are not components but parts of their parent.
bool isPartElement(const String& name)
{
    return name == "sizelimit" || name == "entry" || name == "page" || name == "subpanel" || name == "shape" ||
           name == "scalemargins";
}

[[noreturn]] void throwError(const TextKey& key, const char* placeholder = nullptr, const String& value = String())
{
    String text = localize(key);
    if (placeholder) text = text.replace(placeholder, value);
    throw CError(String(), text);
}

// The layout a "layout" attribute names, or null when it names none.
P<ILayout> makeLayout(const CElementReader& reader)
{
    const String type = reader.getLower("layout");
    if (type.isEmpty()) return nullptr;
    if (type == "growhorz") return make<CGrowLayout>(Orientation::horizontal);
    if (type == "growvert") return make<CGrowLayout>(Orientation::vertical);
    if (type == "layer") return make<CLayerLayout>();
    throwError(builder::texts::unknownLayout, "%TYPE%", reader.get("layout"));
}

// A size of so many pixels.
class CPixelGUISize : public CObject, public virtual IGUISize
{
public:
    explicit CPixelGUISize(CSize size) : m_size(size) {}
    CSize getSize() const override { return m_size; }

private:
    CSize m_size;
};

// A size given as pixels ("width", "height") or as a text in a font
// ("textid", "text", "heightchars", with the pixels added).
P<IGUISize> readSize(const CElementReader& reader, const P<ITextMetrics>& metrics)
{
    const int width = reader.getInt("width", 0);
    const int height = reader.getInt("height", 0);
    if (reader.has("text") || reader.has("textid") || reader.has("heightchars")) {
        return make<CTextGUISize>(metrics, reader.getText(), reader.getInt("heightchars", 0), width, height);
    }
    return make<CPixelGUISize>(CSize{width, height});
}

P<ITextMetrics> metricsOf(const CWindow* window)
{
    return window ? P<ITextMetrics>(window->getFont()) : P<ITextMetrics>(CStyle::get().font);
}

}  // namespace

struct CGUIBuilder::Context
{
    // Where a component's window goes, and the layout its item goes into
    // (null: the parent window's own layout).
    CWindow* parentWindow = nullptr;
    ILayout* parentLayout = nullptr;
    // The window system handed down by the ancestors; null for the default.
    P<IWindowSystem> system;
};

CGUIBuilder::CGUIBuilder() : m_documents(make<CLayoutDocumentCache>()), m_images(make<CImageCache>()) {}

CGUIBuilder::~CGUIBuilder() = default;

void CGUIBuilder::setDefaultWindowSystem(const P<IWindowSystem>& system)
{
    m_defaultSystem = system;
}

P<IWindowSystem> CGUIBuilder::getDefaultWindowSystem() const
{
    return m_defaultSystem;
}

void CGUIBuilder::loadFile(const CURI& uri)
{
    const P<CLayoutDocument> document = m_documents->get(uri);
    m_documents->resetIncludeExpansions();
    checkTree({document->getRoot(), document}, {});
    for (const P<CLayoutDocument>& loaded : m_loaded) {
        if (loaded == document) return;
    }
    m_loaded.push_back(document);
}

// Walks every element once, so that every include is parsed and a broken
// or missing one is reported when the file is loaded.
void CGUIBuilder::checkTree(const CLayoutElement& element, const std::vector<String>& chain)
{
    CXMLIncludeWalker walker(*m_documents, element, chain);
    while (const CLayoutElement child = walker.next()) checkTree(child, walker.getIncludeChain());
}

void CGUIBuilder::clearDocuments()
{
    m_loaded.clear();
    m_documents->clear();
    m_images->clear();
}

void CGUIBuilder::clearTables()
{
    m_windows.clear();
    m_buttons.clear();
    m_layoutItems.clear();
    m_sizeLinks.clear();
}

P<ILayoutItem> CGUIBuilder::build(const String& id, CWindow* parentWindow, ILayout* parentLayoutGroup)
{
    clearTables();
    m_documents->resetIncludeExpansions();
    const std::string wanted = id.toStdString();
    for (const P<CLayoutDocument>& document : m_loaded) {
        CXMLIncludeWalker walker(*m_documents, {document->getRoot(), document});
        while (const CLayoutElement element = walker.next()) {
            const char* elementId = element.element->Attribute("id");
            if (!elementId || wanted != elementId) continue;
            Context context;
            context.parentWindow = parentWindow;
            context.parentLayout = parentLayoutGroup;
            return buildElement(element, walker.getIncludeChain(), context);
        }
    }
    throwError(builder::texts::componentNotFound, "%ID%", id);
}

P<CWindow> CGUIBuilder::getWindow(const String& id) const
{
    const auto found = m_windows.find(id.toStdString());
    return found == m_windows.end() ? nullptr : found->second;
}

P<CButton> CGUIBuilder::getButton(const String& id) const
{
    const auto found = m_buttons.find(id.toStdString());
    return found == m_buttons.end() ? nullptr : found->second;
}

P<ILayoutItem> CGUIBuilder::getLayoutItem(const String& id) const
{
    const auto found = m_layoutItems.find(id.toStdString());
    return found == m_layoutItems.end() ? nullptr : found->second;
}

P<CGrowLayoutSizeLink> CGUIBuilder::getSizeLink(const String& name) const
{
    const auto found = m_sizeLinks.find(name.toStdString());
    return found == m_sizeLinks.end() ? nullptr : found->second;
}

// ---- one element ----

P<ILayoutItem> CGUIBuilder::buildElement(const CLayoutElement& element, const std::vector<String>& chain,
                                         const Context& context)
{
    const CElementReader reader(element);
    const P<ILayout> layout = makeLayout(reader);
    const String name = reader.getName();
    Context childContext = context;
    P<ILayoutItem> item;
    CWindow* component = nullptr;
    if (name == "layoutgroup") {
        item = buildGroup(reader, layout, context, childContext);
    } else if (name == "space") {
        return buildSpace(reader, context);
    } else if (name == "paddedlayoutgroup") {
        item = buildPaddedGroup(reader, layout, context, childContext);
    } else if (isPartElement(name)) {
        reader.throwUnexpected();
    } else {
        const P<CWindow> window = buildComponent(reader, layout, context, childContext);
        component = window.get();
        item = window;
    }
    buildChildren(element, chain, childContext, component);
    return item;
}

P<ILayoutItem> CGUIBuilder::buildGroup(const CElementReader& reader, const P<ILayout>& layout, const Context& context,
                                       Context& childContext)
{
    if (!context.parentWindow && !context.parentLayout) throwError(builder::texts::needParent);
    if (!layout) reader.require("layout");
    addToParent(layout, readLayoutParams(reader), context);
    registerItem(reader.get("id"), layout);
    childContext.parentLayout = layout.get();
    return layout;
}

P<ILayoutItem> CGUIBuilder::buildPaddedGroup(const CElementReader& reader, const P<ILayout>& layout,
                                             const Context& context, Context& childContext)
{
    if (!context.parentWindow && !context.parentLayout) throwError(builder::texts::needParent);
    if (!layout) reader.require("layout");
    auto outer = make<CPaddedLayout>(readSize(reader, metricsOf(context.parentWindow)));
    outer->addItem(layout, {.horzGrow = 1, .vertGrow = 1});
    addToParent(outer, readLayoutParams(reader), context);
    registerItem(reader.get("id"), outer);
    registerItem(reader.get("innerid"), layout);
    childContext.parentLayout = layout.get();
    return outer;
}

P<ILayoutItem> CGUIBuilder::buildSpace(const CElementReader& reader, const Context& context)
{
    auto space = make<CFixedLayoutItem>(readSize(reader, metricsOf(context.parentWindow)));
    addToParent(space, readLayoutParams(reader), context);
    registerItem(reader.get("id"), space);
    return space;
}

P<CWindow> CGUIBuilder::buildComponent(const CElementReader& reader, const P<ILayout>& layout, const Context& context,
                                       Context& childContext)
{
    const String type = reader.getName();
    // Everything that can fail on the file's content is read before the
    // window is made.
    const bool hasText = reader.has("text") || reader.has("textid");
    const String text = reader.getText();
    std::optional<TextAlign> align;
    if (reader.has("textalign")) {
        const String value = reader.getLower("textalign");
        if (value == "left")
            align = TextAlign::left;
        else if (value == "right")
            align = TextAlign::right;
        else if (value == "center")
            align = TextAlign::center;
        else
            reader.throwInvalid("textalign");
    }
    const std::optional<CColor> backColor = reader.getColor("backcolor");
    const std::optional<CColor> textColor = reader.getColor("textcolor");
    const bool hasToolTip = reader.has("tooltiptext") || reader.has("tooltiptextid");
    const String toolTip = reader.getText("tooltiptextid", "tooltiptext");
    const CLayoutParams params = readLayoutParams(reader);

    P<IWindowSystem> system = context.system;
    if (reader.has("windowsystem")) system = resolveWindowSystem(reader.get("windowsystem"));
    if (!system) system = resolveWindowSystem(String());
    childContext.system =
        reader.has("childwindowsystem") ? resolveWindowSystem(reader.get("childwindowsystem")) : system;

    const P<CWindow> window = system->createWindow(type, context.parentWindow, *reader.getParameters());
    if (!window)
        throwError(builder::texts::unknownComponentType, "%TYPE%", String::copyOf(reader.getElement().element->Name()));
    if (hasText) window->setText(text);
    if (align) window->setTextAlign(*align);
    if (backColor) window->setBackColor(backColor);
    if (textColor) window->setTextColor(textColor);
    if (hasToolTip) window->setToolTipText(toolTip);
    if (reader.has("details")) window->setDetails(reader.getInt("details", 0));
    applyTypeAttributes(type, *window, reader, [this](const CURI& uri) { return loadImage(uri); });

    childContext.parentWindow = window.get();
    childContext.parentLayout = nullptr;
    if (auto* scroll = dynamic_cast<CScrollPanel*>(window.get())) {
        // The panel scrolls one content window that holds the children; without
        // a layout of their own they lie over each other in it, filling it.
        auto content = make<CWindow>();
        content->setLayout(layout ? layout : P<ILayout>(make<CLayerLayout>()));
        scroll->setContent(content);
        childContext.parentWindow = content.get();
    } else if (layout) {
        window->setLayout(layout);
    }

    const String id = reader.get("id");
    if (!id.isEmpty()) window->setId(id);
    addToParent(window, params, context);
    registerItem(id, window);
    return window;
}

void CGUIBuilder::buildChildren(const CLayoutElement& element, const std::vector<String>& chain,
                                const Context& childContext, CWindow* component)
{
    struct Part
    {
        CLayoutElement element;
        std::vector<String> chain;
    };
    std::vector<Part> limits;
    std::vector<Part> parts;
    CXMLIncludeWalker walker(*m_documents, element, chain);
    while (const CLayoutElement child = walker.next()) {
        const String name = String::copyOf(child.element->Name()).toLowerCase();
        if (name == "sizelimit") {
            limits.push_back({child, walker.getIncludeChain()});
        } else if (isPartElement(name)) {
            parts.push_back({child, walker.getIncludeChain()});
        } else {
            buildElement(child, walker.getIncludeChain(), childContext);
        }
    }
    for (const Part& limit : limits) {
        const CElementReader reader(limit.element);
        if (!component) reader.throwUnexpected();
        applySizeLimit(reader, *component);
    }
    for (const Part& part : parts) {
        if (!component) CElementReader(part.element).throwUnexpected();
        applyTypeChild(part.element, part.chain, *component, childContext);
    }
}

void CGUIBuilder::applySizeLimit(const CElementReader& reader, CWindow& component)
{
    if (!reader.has("limit")) throwError(builder::texts::noSizeLimitType);
    const String limit = reader.getLower("limit");
    LimitKind kind = LimitKind::lower;
    if (limit == "upper")
        kind = LimitKind::upper;
    else if (limit != "lower")
        throwError(builder::texts::unknownSizeLimitType, "%TYPE%", reader.get("limit"));
    const String sizeType = reader.getLower("sizetype");
    SizeType which = SizeType::preferred;
    if (sizeType == "min")
        which = SizeType::min;
    else if (sizeType == "max")
        which = SizeType::max;
    else if (sizeType != "preferred")
        throwError(builder::texts::unknownSizeType, "%TYPE%", reader.get("sizetype"));

    auto size = make<CTextGUISize>(component.getFont(), reader.getText(), reader.getInt("heightchars", 0),
                                   reader.getInt("widthadd", 0), reader.getInt("heightadd", 0));
    P<CGUISizeLimits> limits = component.getSizeLimits();
    if (!limits) limits = make<CGUISizeLimits>();
    limits->addLimit(kind, which, size);
    component.setSizeLimits(limits);
}

// ---- the parts of particular components ----

void CGUIBuilder::applyTypeChild(const CLayoutElement& child, const std::vector<String>& chain, CWindow& component,
                                 const Context& childContext)
{
    const CElementReader reader(child);
    const String name = reader.getName();
    if (name == "entry") {
        auto* list = dynamic_cast<CDropList*>(&component);
        if (!list) reader.throwUnexpected();
        list->addEntry(reader.getText());
        if (reader.getBool("selected", false)) list->setSelectedIndex(list->getEntryCount() - 1);
    } else if (name == "page") {
        auto* tabs = dynamic_cast<CTabView*>(&component);
        if (!tabs) reader.throwUnexpected();
        const String text = reader.getText();
        buildPane(child, chain, childContext, [tabs, &reader, &text](const P<CWindow>& page) {
            const int index = tabs->addPage(text, page);
            if (reader.getBool("selected", false)) tabs->setSelectedIndex(index);
        });
    } else if (name == "subpanel") {
        auto* split = dynamic_cast<CSplitPanel*>(&component);
        if (!split) reader.throwUnexpected();
        const bool hasText = reader.has("text") || reader.has("textid");
        const String text = reader.getText();
        buildPane(child, chain, childContext, [split, hasText, &text](const P<CWindow>& pane) {
            if (hasText) pane->setText(text);
            split->addChild(pane);
        });
    } else if (name == "shape") {
        auto* frame = dynamic_cast<CFrameWindow*>(&component);
        if (!frame) reader.throwUnexpected();
        applyShape(reader, *frame);
    } else {
        reader.throwUnexpected();
    }
}

void CGUIBuilder::buildPane(const CLayoutElement& child, const std::vector<String>& chain, const Context& childContext,
                            const std::function<void(const P<CWindow>&)>& attach)
{
    const CElementReader reader(child);
    const P<ILayout> layout = makeLayout(reader);
    const std::optional<CColor> backColor = reader.getColor("backcolor");
    const std::optional<CColor> textColor = reader.getColor("textcolor");
    // A skin may have its own look for pages and panes; the plain system
    // has none, and they are plain windows.
    P<IWindowSystem> system = childContext.system ? childContext.system : resolveWindowSystem(String());
    const String type = reader.getName();
    P<CWindow> pane = system->hasType(type) ? system->createWindow(type, nullptr, *reader.getParameters()) : nullptr;
    if (!pane) {
        pane = make<CWindow>();
        pane->getProperties().merge(*reader.getParameters());
    }
    if (layout) pane->setLayout(layout);
    if (backColor) pane->setBackColor(backColor);
    if (textColor) pane->setTextColor(textColor);
    const String id = reader.get("id");
    if (!id.isEmpty()) pane->setId(id);
    attach(pane);
    registerItem(id, pane);
    Context paneContext = childContext;
    paneContext.parentWindow = pane.get();
    paneContext.parentLayout = nullptr;
    buildChildren(child, chain, paneContext, pane.get());
}

void CGUIBuilder::applyShape(const CElementReader& reader, CFrameWindow& frame)
{
    CFrameShape shape;
    shape.image = loadImage(reader.getURI("image"));
    shape.adaptToWindowSize = reader.getBool("adapttowindowsize", false);
    shape.alphaThreshold = reader.getInt("alphathreshold", shape.alphaThreshold);
    for (const tinyxml2::XMLElement* child = reader.getElement().element->FirstChildElement(); child;
         child = child->NextSiblingElement()) {
        const CElementReader margins({child, reader.getElement().document});
        if (margins.getName() != "scalemargins") margins.throwUnexpected();
        shape.marginLeft = margins.getInt("left", 0);
        shape.marginTop = margins.getInt("top", 0);
        shape.marginRight = margins.getInt("right", 0);
        shape.marginBottom = margins.getInt("bottom", 0);
    }
    frame.setShape(shape);
}

// ---- placing and recording ----

CLayoutParams CGUIBuilder::readLayoutParams(const CElementReader& reader)
{
    CLayoutParams params;
    params.horzGrow = reader.getInt("horzgrow", 0);
    params.vertGrow = reader.getInt("vertgrow", 0);
    params.horzAlign = reader.getInt("horzalign", 0);
    params.vertAlign = reader.getInt("vertalign", 0);
    if (reader.has("sizelink")) params.sizeLink = sizeLink(reader.get("sizelink"));
    if (reader.has("widthlink")) params.widthLink = sizeLink(reader.get("widthlink"));
    if (reader.has("heightlink")) params.heightLink = sizeLink(reader.get("heightlink"));
    return params;
}

P<CGrowLayoutSizeLink> CGUIBuilder::sizeLink(const String& name)
{
    P<CGrowLayoutSizeLink>& link = m_sizeLinks[name.toStdString()];
    if (!link) link = make<CGrowLayoutSizeLink>();
    return link;
}

void CGUIBuilder::addToParent(const P<ILayoutItem>& item, const CLayoutParams& params, const Context& context)
{
    if (context.parentLayout) {
        context.parentLayout->addItem(item, params);
        return;
    }
    if (!context.parentWindow) return;
    if (const P<ILayout> layout = context.parentWindow->getLayout()) {
        layout->addItem(item, params);
    } else if (auto* group = dynamic_cast<ILayout*>(item.get()); group && !dynamic_cast<CWindow*>(item.get())) {
        // A group in a window without a layout becomes the window's layout.
        context.parentWindow->setLayout(group);
    }
}

void CGUIBuilder::registerItem(const String& id, const P<ILayoutItem>& item)
{
    if (id.isEmpty()) return;
    // The first part with an id keeps it, as CWindow::findWindow finds the first.
    const std::string key = id.toStdString();
    m_layoutItems.emplace(key, item);
    if (auto* window = dynamic_cast<CWindow*>(item.get())) {
        m_windows.emplace(key, window);
        if (auto* button = dynamic_cast<CButton*>(window)) m_buttons.emplace(key, button);
    }
}

P<IWindowSystem> CGUIBuilder::resolveWindowSystem(const String& id) const
{
    if (id.isEmpty()) {
        if (m_defaultSystem) return m_defaultSystem;
        if (P<IWindowSystem> system = CWindowSystemRegistry::get("default")) return system;
        throwError(builder::texts::invalidWindowSystem, "%ID%", "default");
    }
    P<IWindowSystem> system = CWindowSystemRegistry::get(id);
    if (!system) throwError(builder::texts::invalidWindowSystem, "%ID%", id);
    return system;
}

P<IImage> CGUIBuilder::loadImage(const CURI& uri)
{
    const String key = uri.getURI();
    if (P<IImage> cached = m_images->get(key)) return cached;
    P<IImage> image = decodeImage(uri);
    m_images->put(key, image);
    return image;
}

}  // namespace fenn::gui

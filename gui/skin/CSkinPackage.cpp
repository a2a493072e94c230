#include "gui/skin/CSkinPackage.h"

#include <tinyxml2.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "foundation/CError.h"
#include "foundation/IStringLocalizer.h"
#include "gui/image/CImageDecoderRegistry.h"
#include "gui/skin/SkinTexts.h"

namespace fenn::gui::skin {

namespace {

using tinyxml2::XMLElement;

// A skin.xml larger than this is not a skin: refuse it before parsing.
constexpr std::uintmax_t kMaxSkinFileBytes = 4 * 1024 * 1024;

std::string readSkinFile(const String& path, const CSkinPackageBase& errors)
{
    std::error_code error;
    const std::filesystem::path file(path.toStdString());
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error || size > kMaxSkinFileBytes) errors.throwSyntaxError(0);
    std::ifstream stream(file, std::ios::binary);
    if (!stream) errors.throwSyntaxError(0);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

bool isLayerElement(const String& name)
{
    return name == "animlayer" || name == "textlayer";
}

}  // namespace

CSkinPackage::CSkinPackage(const String& folder, P<CImageCache> cache)
    : CSkinPackageBase(folder + "/skin.xml"), m_folder(folder), m_cache(cache ? cache : make<CImageCache>())
{
    parse(readSkinFile(getFileName(), *this));
}

CSkinPackage::CSkinPackage(const String& folder, const std::string& xml, P<CImageCache> cache)
    : CSkinPackageBase(folder + "/skin.xml"), m_folder(folder), m_cache(cache ? cache : make<CImageCache>())
{
    parse(xml);
}

P<ISkinSet> CSkinPackage::getSkinSet(const String& id) const
{
    const auto found = m_sets.find(id.toStdString());
    return found == m_sets.end() ? nullptr : found->second;
}

void CSkinPackage::parse(const std::string& xml)
{
    tinyxml2::XMLDocument document;
    if (document.Parse(xml.data(), xml.size()) != tinyxml2::XML_SUCCESS) throwSyntaxError(document.ErrorLineNum());
    const XMLElement* root = document.RootElement();
    if (!root) throwSyntaxError(document.ErrorLineNum());
    if (elementName(*root) != "skinpackage") throwUnexpectedElement(*root);
    for (const XMLElement* child = root->FirstChildElement(); child; child = child->NextSiblingElement()) {
        const String name = elementName(*child);
        if (name == "skininfo") {
            if (m_info) throwDefinedTwice(*child, "skininfo", String());
            m_info = make<CSkinPackageInfo>(CSkinPackageInfo::Fields{
                getAttribute(*child, "name", String()), getAttribute(*child, "version", String()),
                getAttribute(*child, "copyright", String()), getAttribute(*child, "author", String()),
                getAttribute(*child, "website", String()), getAttribute(*child, "image", String())});
        } else if (name == "skinset") {
            parseSkinSet(*child);
        } else {
            throwUnexpectedElement(*child);
        }
    }
    if (!m_info) m_info = make<CSkinPackageInfo>(CSkinPackageInfo::Fields{});
    if (m_sets.empty()) throwMissingElement(*root, "skinset");
}

void CSkinPackage::parseSkinSet(const XMLElement& element)
{
    const String id = getAttribute(element, "id");
    if (m_sets.count(id.toStdString())) throwDefinedTwice(element, "skinset", id);
    auto set = make<CSkinSet>(id);
    for (const char* kind : {"button", "textfield", "textarea", "sliderbar", "tabview", "checkbox", "selectfield"}) {
        if (const std::optional<String> skinId = findAttribute(element, kind)) set->setDefaultSkinId(kind, *skinId);
    }
    for (const XMLElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const P<ISkin> skin = parseSkin(*child);
        if (!set->addSkin(skin)) throwDefinedTwice(*child, elementName(*child), skin->getId());
    }
    m_sets.emplace(id.toStdString(), set);
    m_setIds.push_back(id);
}

P<ISkin> CSkinPackage::parseSkin(const XMLElement& element)
{
    const String name = elementName(element);
    const auto noOthers = [](const XMLElement&) { return false; };
    P<CSkin> skin;
    if (name == "buttonskin")
        skin = make<CButtonSkin>(getAttribute(element, "id"));
    else if (name == "fieldskin")
        skin = make<CFieldSkin>(getAttribute(element, "id"));
    else if (name == "checkboxskin")
        skin = make<CCheckBoxSkin>(getAttribute(element, "id"));
    else if (name == "selectfieldskin")
        skin = make<CSelectFieldSkin>(getAttribute(element, "id"));
    if (skin) {
        parseLayers(element, *skin, noOthers);
    } else if (name == "sliderbarskin") {
        auto slider = make<CSliderBarSkin>(getAttribute(element, "id"));
        parseSliderBar(element, *slider);
        skin = slider;
    } else if (name == "tabviewskin") {
        auto tabs = make<CTabViewSkin>(getAttribute(element, "id"));
        parseTabView(element, *tabs);
        skin = tabs;
    } else {
        throwUnexpectedElement(element);
    }
    if (findAttribute(element, "objectpos")) skin->setObjectPos(parseMarginList(element, "objectpos"));
    return skin;
}

void CSkinPackage::parseSliderBar(const XMLElement& element, CSliderBarSkin& skin)
{
    for (const XMLElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const String name = elementName(*child);
        const auto noOthers = [](const XMLElement&) { return false; };
        if (name == "sliderareamargins")
            skin.setSliderAreaMargins(getMargins(*child, true));
        else if (name == "tickmarkareamargins")
            skin.setTickMarkAreaMargins(getMargins(*child, true));
        else if (name == "background")
            parseLayers(*child, skin, noOthers);
        else if (name == "staticfiller")
            parseLayers(*child, *skin.staticFiller(), noOthers);
        else if (name == "scalingfiller")
            parseLayers(*child, *skin.scalingFiller(), noOthers);
        else if (name == "slider")
            parseLayers(*child, *skin.slider(), noOthers);
        else if (name == "tickmark")
            parseLayers(*child, *skin.tickMark(), noOthers);
        else
            throwUnexpectedElement(*child);
    }
}

void CSkinPackage::parseTabView(const XMLElement& element, CTabViewSkin& skin)
{
    const auto noOthers = [](const XMLElement&) { return false; };
    for (const XMLElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const String name = elementName(*child);
        if (name == "tabarea") {
            const String placement = getAttribute(*child, "placement", "top").toLowerCase();
            if (placement != "top" && placement != "bottom") throwInvalidAttribute(*child, "placement");
            const String align = getAttribute(*child, "tabalign", "left").toLowerCase();
            if (align != "left" && align != "center" && align != "right") throwInvalidAttribute(*child, "tabalign");
            std::vector<String> ids = splitList(getAttribute(*child, "tabids", "tab"));
            for (const String& id : ids) {
                if (id.isEmpty()) throwInvalidAttribute(*child, "tabids");
            }
            SkinMargins margins;
            for (const XMLElement* part = child->FirstChildElement(); part; part = part->NextSiblingElement()) {
                if (elementName(*part) != "margins") throwUnexpectedElement(*part);
                margins = getMargins(*part, true);
            }
            skin.setTabArea(placement == "top" ? TabPlacement::top : TabPlacement::bottom,
                            align == "left"     ? TabAlign::left
                            : align == "center" ? TabAlign::center
                                                : TabAlign::right,
                            std::move(ids), margins);
        } else if (name == "background") {
            parseLayers(*child, skin, noOthers);
        } else if (name == "contentarea") {
            skin.setContentAreaMargins(getMargins(*child, true));
        } else if (name == "tabskin") {
            auto tab = make<CTabSkin>(getAttribute(*child, "id"));
            parseLayers(*child, *tab, [&](const XMLElement& part) {
                const String partName = elementName(part);
                if (partName == "coremargins")
                    tab->setCoreMargins(getMargins(part, true));
                else if (partName == "overlapmargins")
                    tab->setOverlapMargins(getMargins(part, true));
                else
                    return false;
                return true;
            });
            if (findAttribute(*child, "objectpos")) tab->setObjectPos(parseMarginList(*child, "objectpos"));
            if (!skin.addTabSkin(tab)) throwDefinedTwice(*child, "tabskin", tab->getId());
        } else {
            throwUnexpectedElement(*child);
        }
    }
    const String missing = skin.findMissingTabSkin();
    if (!missing.isEmpty()) throwMissingElement(element, "tabskin " + missing);
}

template <class Other> void CSkinPackage::parseLayers(const XMLElement& element, CSkin& skin, Other other)
{
    int position = 0;
    for (const XMLElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (isLayerElement(elementName(*child)))
            parseLayer(*child, skin, position++);
        else if (!other(*child))
            throwUnexpectedElement(*child);
    }
}

void CSkinPackage::parseLayer(const XMLElement& element, CSkin& skin, int position)
{
    const String states = getAttribute(element, "states", String());
    const String transitions = getAttribute(element, "transitions", String());
    if (states.isEmpty() && transitions.isEmpty()) {
        throw CParseError(localize(texts::xmlLayerMissingStateTrans)
                              .replace("%FILE%", getFileName())
                              .replace("%LINE%", fromInt(element.GetLineNum())));
    }

    LayerGeometry geometry;
    geometry.order = getInt(element, "order", position);
    geometry.left = getInt(element, "left", 0);
    geometry.top = getInt(element, "top", 0);
    geometry.right = getInt(element, "right", 0);
    geometry.bottom = getInt(element, "bottom", 0);
    geometry.leftFactor = getDouble(element, "leftfactor", 0.0);
    geometry.topFactor = getDouble(element, "topfactor", 0.0);
    geometry.rightFactor = getDouble(element, "rightfactor", 0.0);
    geometry.bottomFactor = getDouble(element, "bottomfactor", 0.0);
    const auto parseHAlign = [&](const String& text, const char* attribute) {
        const String value = text.toLowerCase();
        if (value == "left") return TextAlign::left;
        if (value == "center") return TextAlign::center;
        if (value == "right") return TextAlign::right;
        throwInvalidAttribute(element, attribute);
    };
    const auto parseVAlign = [&](const String& text, const char* attribute) {
        const String value = text.toLowerCase();
        if (value == "top") return VerticalAlign::top;
        if (value == "center") return VerticalAlign::center;
        if (value == "bottom") return VerticalAlign::bottom;
        throwInvalidAttribute(element, attribute);
    };
    if (const std::optional<String> align = findAttribute(element, "contentalign")) {
        const std::vector<String> parts = splitList(*align);
        if (parts.size() != 2) throwInvalidAttribute(element, "contentalign");
        geometry.halign = parseHAlign(parts[0], "contentalign");
        geometry.valign = parseVAlign(parts[1], "contentalign");
    }
    if (const std::optional<String> align = findAttribute(element, "halign"))
        geometry.halign = parseHAlign(splitList(*align).front(), "halign");
    if (const std::optional<String> align = findAttribute(element, "valign"))
        geometry.valign = parseVAlign(splitList(*align).front(), "valign");

    const bool isText = elementName(element) == "textlayer";
    for (const XMLElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const String name = elementName(*child);
        if (name == "opacity") {
            geometry.opacity = getDouble(*child, "value", 1.0);
            if (geometry.opacity < 0.0 || geometry.opacity > 1.0) throwInvalidAttribute(*child, "value");
        } else if (name == "contentmargins") {
            geometry.contentMargins = getMargins(*child, false);
        } else if (name == "minsize") {
            geometry.minWidth = getInt(*child, "width", -1);
            geometry.minHeight = getInt(*child, "height", -1);
        } else if (name == "scalemargins" && !isText) {
            // Read with the image below.
        } else if (name == "font" && isText) {
            // Read with the text options below.
        } else {
            throwUnexpectedElement(*child);
        }
    }

    const P<CLayer> layer = isText ? makeTextLayer(element, geometry) : makeAnimationLayer(element, geometry);
    const CSkin::BindResult result = skin.addLayer(layer, states, transitions);
    if (result == CSkin::BindResult::badStates) throwInvalidAttribute(element, "states");
    if (result == CSkin::BindResult::badTransitions) throwInvalidAttribute(element, "transitions");
}

P<CLayer> CSkinPackage::makeAnimationLayer(const XMLElement& element, const LayerGeometry& geometry)
{
    ImageOptions options;
    options.noScale = getBool(element, "noscale", false);
    const XMLElement* margins = findChild(element, "scalemargins");
    if (margins) options.scaleMargins = getMargins(*margins, false);
    const int frames = getInt(element, "frames", 1);
    if (frames < 1) throwInvalidAttribute(element, "frames");
    const int delay = getInt(element, "delay", 0);
    if (delay < 0) throwInvalidAttribute(element, "delay");

    const std::optional<String> file = findAttribute(element, "file");
    const std::optional<String> property = findAttribute(element, "uriprop");
    if (file.has_value() == property.has_value() || (file && file->isEmpty()) || (property && property->isEmpty()))
        throwMissingAttribute(element, "uri/uriprop");
    if (property) return make<CAnimationLayer>(geometry, options, *property, frames, delay, m_folder, m_cache);

    const P<IImage> image = loadImage(*file);
    if (!image) throwInvalidAttribute(element, "file");
    const P<IAnimation> animation = cutStrip(image, frames, delay);
    if (!animation) throwInvalidAttribute(element, "frames");
    if (options.scaleMargins) {
        const CSize frame = animation->getFrame(0)->getSize();
        const SkinMargins& m = *options.scaleMargins;
        if (m.horizontal() > frame.width || m.vertical() > frame.height)
            throwInvalidAttribute(*margins, "scalemargins");
    }
    // The @2x twin: "<name>@2x.png" beside "<name>.png"; one that cannot be
    // cut like the 1x image is ignored.
    P<IAnimation> highRes;
    const std::string path = file->toStdString();
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.rfind('/');
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) {
        const String twin = String::copyOf(path.substr(0, dot) + "@2x" + path.substr(dot));
        if (const P<IImage> large = loadImage(twin)) highRes = cutStrip(large, frames, delay);
    }
    return make<CAnimationLayer>(geometry, options, animation, highRes);
}

P<CLayer> CSkinPackage::makeTextLayer(const XMLElement& element, const LayerGeometry& geometry)
{
    TextOptions options;
    options.color = findColor(element, "color");
    options.halo = findColor(element, "halo");
    options.shadow = findColor(element, "shadow");
    options.shadowX = getInt(element, "xoffset", 0);
    options.shadowY = getInt(element, "yoffset", 1);
    options.multiline = getBool(element, "multiline", false);
    options.lineSpacing = getInt(element, "linespacing", 0);
    if (const XMLElement* font = findChild(element, "font")) {
        if (const std::optional<String> name = findAttribute(*font, "name")) options.fontName = *name;
        if (findAttribute(*font, "size")) {
            const double size = getDouble(*font, "size", 0.0);
            if (size <= 0.0 || size > 200.0) throwInvalidAttribute(*font, "size");
            options.fontSize = size;
        }
        options.bold = findBool(*font, "bold");
        options.italics = getBool(*font, "italics", false);
        options.underline = getBool(*font, "underline", false);
        options.strikeout = getBool(*font, "strikeout", false);
        options.antialias = getBool(*font, "antialias", true);
    }
    return make<CTextLayer>(geometry, options);
}

P<IImage> CSkinPackage::loadImage(const String& relativePath) const
{
    const String path = m_folder + "/" + relativePath;
    if (P<IImage> cached = m_cache->get(path)) return cached;
    std::error_code error;
    if (!std::filesystem::is_regular_file(path.toStdString(), error)) return nullptr;
    std::ifstream stream(path.toStdString(), std::ios::binary);
    const std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    // A damaged image is reported by the caller as the attribute that names it.
    P<IImage> image;
    try {
        image = decodeImage(bytes);
    } catch (const CException&) {
        return nullptr;
    }
    m_cache->put(path, image);
    return image;
}

}  // namespace fenn::gui::skin

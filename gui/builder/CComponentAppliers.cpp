#include "gui/builder/CComponentAppliers.h"

#include <charconv>
#include <cmath>
#include <string>

#include <map>
#include <string>

#include "foundation/CError.h"
#include "foundation/CObjectError.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/StringParsers.h"
#include "gui/CFrameWindow.h"
#include "gui/builder/BuilderTexts.h"
#include "gui/widgets/CCanvas.h"
#include "gui/widgets/CCellView.h"
#include "gui/widgets/CEditArea.h"
#include "gui/widgets/CEditField.h"
#include "gui/widgets/CImageButton.h"
#include "gui/widgets/CImageDisplay.h"
#include "gui/widgets/CProgressBar.h"
#include "gui/widgets/CScrollPanel.h"
#include "gui/widgets/CSliderBar.h"
#include "gui/widgets/CSplitPanel.h"

namespace fenn::gui {

// ---- CElementReader ----

String CElementReader::getName() const
{
    return String::copyOf(m_element.element->Name()).toLowerCase();
}

bool CElementReader::has(const char* name) const
{
    return m_element.element->Attribute(name) != nullptr;
}

String CElementReader::get(const char* name) const
{
    const char* value = m_element.element->Attribute(name);
    return value ? String::copyOf(value) : String();
}

String CElementReader::require(const char* name) const
{
    if (!has(name)) {
        throw CParseError(layoutErrorText(builder::texts::missingAttribute, m_element.getURI(), m_element.getLine())
                              .replace("%NAME%", String::copyOf(name)));
    }
    return get(name);
}

int CElementReader::getInt(const char* name, int fallback) const
{
    if (!has(name)) return fallback;
    const std::string text = get(name).trim().toStdString();
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.empty() || value > kMaxLayoutNumber ||
        value < -kMaxLayoutNumber) {
        throwInvalid(name);
    }
    return static_cast<int>(value);
}

double CElementReader::getDouble(const char* name, double fallback) const
{
    if (!has(name)) return fallback;
    double value = 0.0;
    try {
        value = toDouble(get(name).trim());
    } catch (const CParseError&) {
        throwInvalid(name);
    }
    if (!std::isfinite(value) || std::abs(value) > kMaxLayoutNumber) throwInvalid(name);
    return value;
}

bool CElementReader::getBool(const char* name, bool fallback) const
{
    if (!has(name)) return fallback;
    const String value = getLower(name);
    if (value == "true" || value == "yes" || value == "1") return true;
    if (value == "false" || value == "no" || value == "0") return false;
    throwInvalid(name);
}

std::optional<CColor> CElementReader::getColor(const char* name) const
{
    if (!has(name)) return std::nullopt;
    return CColor::parse(get(name));
}

String CElementReader::getText(const char* keyName, const char* textName) const
{
    String text = get(textName);
    if (has(keyName)) text = getStringLocalizer()->localize(get(keyName), text);
    return text.replace("\r\n", "\n");
}

CURI CElementReader::getURI(const char* name) const
{
    CURI uri(require(name));
    uri.resolve(m_element.getURI());
    return uri;
}

P<CValueList> CElementReader::getParameters() const
{
    auto parameters = make<CValueList>();
    for (const tinyxml2::XMLAttribute* attribute = m_element.element->FirstAttribute(); attribute;
         attribute = attribute->Next()) {
        parameters->setString(String::copyOf(attribute->Name()), String::copyOf(attribute->Value()));
    }
    return parameters;
}

void CElementReader::throwInvalid(const char* name) const
{
    throw CParseError(layoutErrorText(builder::texts::invalidAttribute, m_element.getURI(), m_element.getLine())
                          .replace("%NAME%", String::copyOf(name))
                          .replace("%VALUE%", get(name)));
}

void CElementReader::throwUnexpected() const
{
    throw CParseError(layoutErrorText(builder::texts::unexpectedElement, m_element.getURI(), m_element.getLine())
                          .replace("%NAME%", String::copyOf(m_element.element->Name())));
}

// ---- the appliers ----

namespace {

using Applier = std::function<void(CWindow& window, const CElementReader& reader, const ImageLoader& images)>;

// An applier for windows of class T; others are left alone.
template <class T> Applier forClass(std::function<void(T&, const CElementReader&, const ImageLoader&)> apply)
{
    return [apply = std::move(apply)](CWindow& window, const CElementReader& reader, const ImageLoader& images) {
        if (auto* typed = dynamic_cast<T*>(&window)) apply(*typed, reader, images);
    };
}

Orientation readSplitOrientation(const CElementReader& reader)
{
    try {
        return parseOrientation(reader.getLower("orient"));
    } catch (const CInvalidArgError&) {
        throw CError(String(),
                     localize(builder::texts::unknownSplitPanelType).replace("%ORIENT%", reader.get("orient")));
    }
}

void applyReadOnly(CTextEditWindow& edit, const CElementReader& reader, const ImageLoader&)
{
    if (reader.has("readonly"))
        edit.setEditMode(reader.getBool("readonly", false) ? EditMode::readOnly : EditMode::editable);
}

void applySlider(CSliderBar& slider, const CElementReader& reader, const ImageLoader&)
{
    if (reader.has("orient")) {
        try {
            slider.setOrientation(parseOrientation(reader.getLower("orient")));
        } catch (const CInvalidArgError&) {
            reader.throwInvalid("orient");
        }
    }
    if (reader.has("barheightfactor")) slider.setBarHeightFactor(reader.getDouble("barheightfactor", 0.0));
    // The range before the step, so that a step larger than the old range is kept.
    if (reader.has("maxpos")) slider.setMaxPosition(reader.getInt("maxpos", 0));
    if (reader.has("stepsize")) slider.setStepSize(reader.getInt("stepsize", 1));
    if (reader.has("tickmarkdelta")) slider.setTickMarkDelta(reader.getInt("tickmarkdelta", 0));
}

void applyCellView(CCellView& view, const CElementReader& reader, const ImageLoader&)
{
    if (reader.has("hlines") || reader.has("vlines")) {
        view.setGridLines(reader.getBool("hlines", false), reader.getBool("vlines", false));
    }
    if (reader.has("hpad") || reader.has("vpad"))
        view.setCellPadding(reader.getInt("hpad", 0), reader.getInt("vpad", 0));
    if (reader.has("linehighlightsize")) view.setLineHighlightSize(reader.getInt("linehighlightsize", 0));
    for (const tinyxml2::XMLAttribute* attribute = reader.getElement().element->FirstAttribute(); attribute;
         attribute = attribute->Next()) {
        if (const auto which = cellViewColorFromAttribute(String::copyOf(attribute->Name())))
            view.setColor(*which, *reader.getColor(attribute->Name()));
    }
}

void applySplitPanel(CSplitPanel& panel, const CElementReader& reader, const ImageLoader& images)
{
    if (reader.has("orient")) panel.setOrientation(readSplitOrientation(reader));
    if (reader.has("backimage")) {
        const auto margin = [&reader](const char* name) {
            const int value = reader.getInt(name, 0);
            if (value < 0) reader.throwInvalid(name);
            return value;
        };
        const CNinePatch::Margins margins{margin("backscaleleft"), margin("backscaletop"), margin("backscaleright"),
                                          margin("backscalebottom")};
        panel.setBackImage(images(reader.getURI("backimage")), margins);
    }
    if (reader.has("centerimage")) panel.setCenterImage(images(reader.getURI("centerimage")));
}

void applyScrollPanel(CScrollPanel& panel, const CElementReader& reader, const ImageLoader&)
{
    if (!reader.has("scroll")) return;
    try {
        panel.setScrollDirections(parseScrollDirections(reader.getLower("scroll")));
    } catch (const CInvalidArgError&) {
        throw CError(String(), localize(builder::texts::unknownScrollType).replace("%TYPE%", reader.get("scroll")));
    }
}

void applyFrame(CFrameWindow& frame, const CElementReader& reader, const ImageLoader& images)
{
    if (reader.has("closeaction")) {
        frame.setCloseAction(reader.getLower("closeaction") == "exit" ? CloseAction::exit : CloseAction::hide);
    }
    // Only "blank" changes the look; other styles are the desktop's usual frame.
    if (reader.has("style")) frame.setBlank(reader.getLower("style") == "blank");
    if (reader.has("resizable")) frame.setResizable(reader.getBool("resizable", true));
    if (reader.has("opacity")) {
        const double opacity = reader.getDouble("opacity", 1.0);
        if (!(opacity >= 0.0 && opacity <= 1.0)) reader.throwInvalid("opacity");
        frame.setOpacity(opacity);
    }
    if (reader.has("image")) frame.setIcon(images(reader.getURI("image")));
}

const std::map<std::string, Applier>& appliers()
{
    static const std::map<std::string, Applier> table = {
        {"editfield", forClass<CTextEditWindow>(&applyReadOnly)},
        {"editarea", forClass<CTextEditWindow>(&applyReadOnly)},
        {"progressbar", forClass<CProgressBar>([](CProgressBar& bar, const CElementReader& reader, const ImageLoader&) {
             if (reader.has("barheightfactor")) bar.setBarHeightFactor(reader.getDouble("barheightfactor", 0.0));
         })},
        {"sliderbar", forClass<CSliderBar>(&applySlider)},
        {"canvas", forClass<CCanvas>([](CCanvas& canvas, const CElementReader& reader, const ImageLoader&) {
             if (reader.has("doublebuffer")) canvas.setDoubleBuffered(reader.getBool("doublebuffer", false));
         })},
        {"cellview", forClass<CCellView>(&applyCellView)},
        {"splitpanel", forClass<CSplitPanel>(&applySplitPanel)},
        {"scrollpanel", forClass<CScrollPanel>(&applyScrollPanel)},
        {"imagebutton",
         forClass<CImageButton>([](CImageButton& button, const CElementReader& reader, const ImageLoader& images) {
             if (reader.has("image")) button.setImage(images(reader.getURI("image")));
         })},
        {"imagedisplay",
         forClass<CImageDisplay>([](CImageDisplay& display, const CElementReader& reader, const ImageLoader& images) {
             if (reader.has("image")) display.setImage(images(reader.getURI("image")));
         })},
        {"frame", forClass<CFrameWindow>(&applyFrame)},
        {"modalframe", forClass<CFrameWindow>(&applyFrame)},
    };
    return table;
}

}  // namespace

void applyTypeAttributes(const String& type, CWindow& window, const CElementReader& reader, const ImageLoader& images)
{
    const auto found = appliers().find(type.toStdString());
    if (found != appliers().end()) found->second(window, reader, images);
}

}  // namespace fenn::gui

#include "gui/dialogs/CMessageBox.h"

#include <algorithm>

#include "foundation/IStringLocalizer.h"
#include "gui/CPainter.h"
#include "gui/CStyle.h"
#include "gui/GuiTexts.h"
#include "gui/layout/CGrowLayout.h"

namespace fenn::gui {

namespace {

// Message texts wrap at this width, so long texts make taller boxes rather
// than wide ones.
constexpr int kTextWidth = 360;

// The message: wrapped text on the panel colour.
class CMessageText : public CWindow
{
public:
    explicit CMessageText(const String& text) { setText(text); }

    CSize computeSize(SizeType type) override
    {
        CTextLayout layout(getFont(), getText());
        layout.setWidth(kTextWidth, TextWrap::wrap);
        const CSize size = layout.getSize();
        if (type == SizeType::max) return {kUnboundedExtent, kUnboundedExtent};
        return {std::min(kTextWidth, std::max(size.width, 200)), size.height};
    }

    void paint(CPainter& painter) override
    {
        painter.drawText(getClientRect(), getText(), getFont(), CStyle::get().text, TextAlign::left,
                         TextWrap::wrap);
    }
};

}  // namespace

CMessageBox::CMessageBox(const String& title, const String& text, MessageBoxButtons buttons)
{
    setText(title);
    const CStyle& style = CStyle::get();
    auto layout = make<CGrowLayout>(Orientation::vertical);
    layout->setSpacing(20);
    setLayout(layout);
    setLayoutMargins(24, 20, 24, 16);
    auto message = make<CMessageText>(text);
    message->setId("messageText");
    addChild(message);
    layout->addItem(message, {.horzGrow = 1, .vertGrow = 1});

    m_buttonRow = make<CWindow>();
    auto rowLayout = make<CGrowLayout>(Orientation::horizontal);
    rowLayout->setSpacing(style.spacing);
    m_buttonRow->setLayout(rowLayout);
    addChild(m_buttonRow);
    // The buttons sit at the right end of the box.
    layout->addItem(m_buttonRow, {.horzAlign = 100});

    switch (buttons) {
    case MessageBoxButtons::ok:
        addButton(localize(texts::messageBoxOK), MessageBoxResult::ok, ButtonKind::primary);
        break;
    case MessageBoxButtons::okCancel:
        addButton(localize(texts::messageBoxOK), MessageBoxResult::ok, ButtonKind::primary);
        addButton(localize(texts::messageBoxCancel), MessageBoxResult::cancel, ButtonKind::normal);
        break;
    case MessageBoxButtons::yesNo:
        addButton(localize(texts::messageBoxYes), MessageBoxResult::yes, ButtonKind::primary);
        addButton(localize(texts::messageBoxNo), MessageBoxResult::no, ButtonKind::normal);
        break;
    case MessageBoxButtons::retryCancel:
        addButton(localize(texts::messageBoxRetry), MessageBoxResult::retry, ButtonKind::primary);
        addButton(localize(texts::messageBoxCancel), MessageBoxResult::cancel, ButtonKind::normal);
        break;
    }
    // Escape answers what the box's last button answers: Cancel or No.
    const MessageBoxResult escape = buttons == MessageBoxButtons::ok ? MessageBoxResult::ok : m_results.back();
    addAccelerator("Escape", [this, escape] { endModal(static_cast<int>(escape)); });
    addAccelerator("Enter", [this] { m_buttons.front()->click(); });
    pack();
    m_buttons.front()->setFocus();
}

void CMessageBox::addButton(const String& text, MessageBoxResult result, ButtonKind kind)
{
    auto button = make<CButton>(text);
    button->setKind(kind);
    button->addFrailListener(this);
    m_buttonRow->addChild(button);
    m_buttonRow->getLayout()->addItem(button, {});
    m_buttons.push_back(button);
    m_results.push_back(result);
}

void CMessageBox::windowNotified(CWindow& window, const CNotification& notification)
{
    if (notification.kind != Notification::clicked) return;
    for (std::size_t i = 0; i < m_buttons.size(); ++i) {
        if (m_buttons[i].get() == &window) endModal(static_cast<int>(m_results[i]));
    }
}

MessageBoxResult CMessageBox::runBox()
{
    return static_cast<MessageBoxResult>(runModal());
}

MessageBoxResult CMessageBox::ask(const String& title, const String& text, MessageBoxButtons buttons)
{
    const P<CMessageBox> box = make<CMessageBox>(title, text, buttons);
    return box->runBox();
}

}  // namespace fenn::gui

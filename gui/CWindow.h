#pragma once

#include <optional>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/CValueList.h"
#include "foundation/String.h"
#include "foundation/TFrailArray.h"
#include "gui/CColor.h"
#include "gui/CFont.h"
#include "gui/CTextLayout.h"
#include "gui/Events.h"
#include "gui/IWindowListener.h"
#include "gui/layout/CGUISizeLimits.h"
#include "gui/layout/ILayoutItem.h"

namespace fenn::gui {

class CFrameWindow;
class CPainter;

// A window of the toolkit: a rectangle in its parent that paints itself
// into its frame's buffer and gets the frame's events. Windows form a tree;
// a parent holds its children strongly, a child knows its parent by a raw
// pointer. Only frames (CFrameWindow) have a window of the platform. Every
// window is also a layout item, sized by computeSize and its size limits,
// and lays out its children with its own layout. GUI thread only.
class CWindow : public CObject, public virtual ILayoutItem
{
public:
    CWindow();
    ~CWindow() override;
    CWindow(const CWindow&) = delete;
    CWindow& operator=(const CWindow&) = delete;

    // ---- the tree ----
    // Adds child as the last child (and last in the Tab order).
    void addChild(const P<CWindow>& child);
    void removeChild(CWindow* child);
    CWindow* getParent() const { return m_parent; }
    const std::vector<P<CWindow>>& getChildren() const { return m_children; }
    // The first window of this subtree (this one included) with the id,
    // compared case-sensitively; null if there is none.
    CWindow* findWindow(const String& id);
    CFrameWindow* getFrame() const;

    // ---- identity and state ----
    const String& getId() const { return m_id; }
    void setId(const String& id) { m_id = id; }
    const String& getText() const { return m_text; }
    virtual void setText(const String& text);
    const String& getToolTipText() const { return m_toolTip; }
    void setToolTipText(const String& text) { m_toolTip = text; }
    bool isVisible() const { return m_visible; }
    void setVisible(bool visible);
    // Visible, and every ancestor too.
    bool isShowing() const;
    // Enabled, and every ancestor too.
    bool isEnabled() const;
    bool isEnabledSelf() const { return m_enabled; }
    void setEnabled(bool enabled);
    // Named values that the application and the skin attach to a window.
    CValueList& getProperties() { return *m_properties; }
    // Sets a property and tells the window (onPropertyChanged), so that what
    // it shows from the property follows; a change made through
    // getProperties() is not told.
    void setProperty(const String& name, const String& value);
    // The window's own colours and font, or none to use the style's.
    void setBackColor(std::optional<CColor> color);
    void setTextColor(std::optional<CColor> color);
    std::optional<CColor> getBackColor() const { return m_backColor; }
    std::optional<CColor> getTextColor() const { return m_textColor; }
    void setTextAlign(TextAlign align);
    TextAlign getTextAlign() const { return m_textAlign; }
    void setFont(P<CFont> font);
    P<CFont> getFont() const;
    // A type-specific style number from a layout file's "details".
    void setDetails(int details) { m_details = details; }
    int getDetails() const { return m_details; }

    // ---- geometry and layout ----
    // Bounds in the parent's coordinates (before the parent's content offset).
    CRect getBounds() const override { return m_bounds; }
    void setBounds(const CRect& bounds) override;
    CRect getClientRect() const { return {0, 0, m_bounds.width, m_bounds.height}; }
    // Where children's bounds start inside this window: scrolling panels
    // move it, others keep (0, 0).
    virtual CPoint getContentOffset() const { return {}; }
    // The window's origin in the frame's coordinates.
    CPoint getFrameOrigin() const;
    CRect toFrame(const CRect& local) const;
    CPoint fromFrame(CPoint framePoint) const;
    void setLayout(P<ILayout> layout);
    P<ILayout> getLayout() const { return m_layout; }
    void setSizeLimits(P<CGUISizeLimits> limits);
    P<CGUISizeLimits> getSizeLimits() const { return m_sizeLimits; }
    // Room kept free on each side of the layout's area.
    void setLayoutMargins(int left, int top, int right, int bottom);
    CSize getSize(SizeType type) override;
    bool isLayoutVisible() const override { return m_visible; }
    void invalidateLayout() override;
    void setLayoutHolder(ILayoutItem* holder) override { m_layoutHolder = holder; }

    // ---- painting ----
    void invalidate();
    void invalidate(const CRect& local);

    // ---- focus ----
    virtual bool isFocusable() const { return m_focusable && isShowing() && isEnabled(); }
    void setFocusable(bool focusable) { m_focusable = focusable; }
    bool hasFocus() const;
    void setFocus();
    bool isHovered() const;
    // The left button went down on this window and is still held.
    bool isPressed() const;

    // ---- listeners ----
    void addListener(IWindowListener* listener) { m_listeners->add(listener); }
    void addFrailListener(IWindowListener* listener) { m_listeners->addFrail(listener); }
    void removeListener(IWindowListener* listener) { m_listeners->remove(listener); }
    void notify(const CNotification& notification);

    // ---- what subclasses override; called by the frame ----
    // The deepest showing window under point (in this window's coordinates).
    virtual CWindow* hitTest(CPoint point);
    virtual void paint(CPainter& painter);
    // Painted after the children: focus rings, overlays.
    virtual void paintOverlay(CPainter& painter);
    // Places the children: by the layout in the area inside the margins.
    virtual void layoutChildren();
    virtual void onMouseEnter() {}
    virtual void onMouseLeave() {}
    // Return true when the event was used; unused wheel events go to the parent.
    virtual bool onMouseDown(const CMouseEvent&) { return false; }
    virtual bool onMouseUp(const CMouseEvent&) { return false; }
    virtual bool onMouseMove(const CMouseEvent&) { return false; }
    // A press and release of the left button on this window.
    virtual void onClick(const CMouseEvent&) {}
    virtual void onDoubleClick(const CMouseEvent&) {}
    virtual bool onWheel(const CWheelEvent&) { return false; }
    // Unused keys go to the parent, then to the frame's accelerators.
    virtual bool onKeyDown(const CKeyEvent&) { return false; }
    virtual bool onKeyUp(const CKeyEvent&) { return false; }
    virtual bool onTextInput(const CTextInputEvent&) { return false; }
    virtual bool onTextEditing(const CTextEditingEvent&) { return false; }
    // Files dropped on the window from a file manager, as paths; false
    // passes them to the parent.
    virtual bool onFilesDropped(const std::vector<String>&) { return false; }
    virtual void onFocusIn() { invalidate(); }
    virtual void onFocusOut() { invalidate(); }
    // Told to every ancestor of a window that has just got the focus, so
    // that a scrolling container can bring it into view.
    virtual void onDescendantFocusIn(CWindow&) {}
    // Whether this window takes text input (the frame starts the input method).
    virtual bool wantsTextInput() const { return false; }
    virtual CRect getTextInputRect() const { return getClientRect(); }
    // The size before limits; the default is the layout's size with margins,
    // or nothing (and no upper bound) without a layout.
    virtual CSize computeSize(SizeType type);

protected:
    virtual void onResized() {}
    // Called when this window or an ancestor is attached to or detached from a frame.
    virtual void onFrameChanged() {}
    // A property was set with setProperty.
    virtual void onPropertyChanged(const String&) {}
    // Colours of this window: its own, else the style's.
    CColor backColorOr(CColor fallback) const { return m_backColor.value_or(fallback); }
    CColor textColorOr(CColor fallback) const { return m_textColor.value_or(fallback); }

private:
    friend class CFrameWindow;
    void setParent(CWindow* parent);
    void frameChanged();

    CWindow* m_parent = nullptr;
    std::vector<P<CWindow>> m_children;
    String m_id;
    String m_text;
    String m_toolTip;
    CRect m_bounds;
    bool m_visible = true;
    bool m_enabled = true;
    bool m_focusable = false;
    int m_details = 0;
    TextAlign m_textAlign = TextAlign::left;
    std::optional<CColor> m_backColor;
    std::optional<CColor> m_textColor;
    P<CFont> m_font;
    P<CValueList> m_properties;
    P<ILayout> m_layout;
    P<CGUISizeLimits> m_sizeLimits;
    int m_marginLeft = 0;
    int m_marginTop = 0;
    int m_marginRight = 0;
    int m_marginBottom = 0;
    ILayoutItem* m_layoutHolder = nullptr;
    P<TFrailArray<IWindowListener>> m_listeners;
};

}  // namespace fenn::gui

#pragma once

#include <map>
#include <string>

#include "foundation/CObject.h"
#include "gui/skin/ISkin.h"

namespace fenn::gui::skin {

// A named set of skins: one table by id for all kinds, and the id a layout
// gets for each widget kind when it names no skin. Immutable once parsed;
// shared. GUI thread.
class ISkinSet : public virtual IBase
{
public:
    virtual String getId() const = 0;
    // The skin with the id, or null.
    virtual P<ISkin> getSkin(const String& id) const = 0;
    // The default skin id of a widget kind ("button", "textfield"...): the
    // set's attribute of that name, else the kind's name itself.
    virtual String getDefaultSkinId(const String& widgetKind) const = 0;
    virtual int getSkinCount() const = 0;
};

class CSkinSet : public CObject, public virtual ISkinSet
{
public:
    explicit CSkinSet(String id) : m_id(std::move(id)) {}

    // False when a skin with the id exists already.
    bool addSkin(const P<ISkin>& skin);
    void setDefaultSkinId(const String& widgetKind, const String& skinId);

    String getId() const override { return m_id; }
    P<ISkin> getSkin(const String& id) const override;
    String getDefaultSkinId(const String& widgetKind) const override;
    int getSkinCount() const override { return static_cast<int>(m_skins.size()); }

private:
    String m_id;
    std::map<std::string, P<ISkin>> m_skins;
    std::map<std::string, String> m_defaults;
};

}  // namespace fenn::gui::skin

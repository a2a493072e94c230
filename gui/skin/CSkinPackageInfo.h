#pragma once

#include "foundation/CObject.h"
#include "foundation/String.h"

namespace fenn::gui::skin {

// What a package says about itself in its skininfo element. Immutable.
class ISkinPackageInfo : public virtual IBase
{
public:
    virtual String getName() const = 0;
    virtual String getVersion() const = 0;
    virtual String getCopyright() const = 0;
    virtual String getAuthor() const = 0;
    virtual String getWebsite() const = 0;
    // The preview image's path inside the package, or empty.
    virtual String getImage() const = 0;
};

class CSkinPackageInfo : public CObject, public virtual ISkinPackageInfo
{
public:
    struct Fields
    {
        String name;
        String version;
        String copyright;
        String author;
        String website;
        String image;
    };

    explicit CSkinPackageInfo(Fields fields) : m_fields(std::move(fields)) {}

    String getName() const override { return m_fields.name; }
    String getVersion() const override { return m_fields.version; }
    String getCopyright() const override { return m_fields.copyright; }
    String getAuthor() const override { return m_fields.author; }
    String getWebsite() const override { return m_fields.website; }
    String getImage() const override { return m_fields.image; }

private:
    Fields m_fields;
};

}  // namespace fenn::gui::skin

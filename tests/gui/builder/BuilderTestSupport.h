#pragma once

#include <filesystem>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "foundation/CURI.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "gui/builder/CGUIBuilder.h"
#include "tests/support/TempFolder.h"

namespace tbtest {

// Answers the keys it was given and the default text for the others.
class TableLocalizer : public fenn::CObject, public virtual fenn::IStringLocalizer
{
public:
    explicit TableLocalizer(std::map<std::string, std::string> table) : m_table(std::move(table)) {}
    fenn::String localize(const fenn::String& key, const fenn::String& defaultText) const override;

private:
    std::map<std::string, std::string> m_table;
};

// Layout files in a temp folder, read through the disk streams, and a
// builder whose default window system is the plain one.
class BuilderTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // Writes text to name (folders made as needed) and returns its URI.
    fenn::CURI writeFile(const std::string& name, const std::string& text) const;
    // Writes and loads a file of layout text.
    fenn::CURI load(const std::string& name, const std::string& text);
    std::string uriText(const std::string& name) const;

    TempFolder m_folder;
    fenn::P<fenn::posix::CDiskStreamFactory> m_diskStreams;
    fenn::P<fenn::gui::CGUIBuilder> m_builder;
    fenn::P<fenn::IStringLocalizer> m_savedLocalizer;
};

// The description of the error that running throws, or "" when it throws
// none; the error must be of class Error.
template <class Error, class Run> std::string errorOf(Run&& run)
{
    try {
        run();
    } catch (const Error& error) {
        return error.getDescription().toStdString();
    }
    return std::string();
}

}  // namespace tbtest

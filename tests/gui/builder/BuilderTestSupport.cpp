#include "tests/gui/builder/BuilderTestSupport.h"

#include <fstream>

#include "foundation/CStreamManager.h"
#include "gui/sdl/DefaultWindowSystem.h"

namespace tbtest {

fenn::String TableLocalizer::localize(const fenn::String& key, const fenn::String& defaultText) const
{
    const auto found = m_table.find(key.toStdString());
    return found == m_table.end() ? defaultText : fenn::String::copyOf(found->second);
}

void BuilderTest::SetUp()
{
    m_savedLocalizer = fenn::getStringLocalizer();
    m_diskStreams = fenn::make<fenn::posix::CDiskStreamFactory>();
    fenn::CStreamManager::getInstance()->addFactory(m_diskStreams);
    m_builder = fenn::make<fenn::gui::CGUIBuilder>();
    m_builder->setDefaultWindowSystem(fenn::gui::sdl::createDefaultWindowSystem());
}

void BuilderTest::TearDown()
{
    fenn::CStreamManager::getInstance()->removeFactory(m_diskStreams.get());
    fenn::setStringLocalizer(m_savedLocalizer);
}

fenn::CURI BuilderTest::writeFile(const std::string& name, const std::string& text) const
{
    const std::filesystem::path path = m_folder / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return fenn::CURI::fromPath(fenn::String::copyOf(path.string()));
}

fenn::CURI BuilderTest::load(const std::string& name, const std::string& text)
{
    const fenn::CURI uri = writeFile(name, text);
    m_builder->loadFile(uri);
    return uri;
}

std::string BuilderTest::uriText(const std::string& name) const
{
    return fenn::CURI::fromPath(fenn::String::copyOf((m_folder / name).string())).getURI().toStdString();
}

}  // namespace tbtest

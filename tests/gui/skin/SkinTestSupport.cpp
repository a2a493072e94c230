#include "tests/gui/skin/SkinTestSupport.h"

#include <cairo.h>

#include <fstream>

#include "foundation/CError.h"
#include "foundation/Core.h"
#include "gui/CPackage.h"
#include "gui/skin/CPackage.h"

namespace skintest {

void SkinFolder::writeImage(const std::string& name, const std::vector<fenn::gui::CColor>& frames, int width,
                            int height)
{
    const int count = static_cast<int>(frames.size());
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width * count, height);
    cairo_t* cr = cairo_create(surface);
    for (int index = 0; index < count; ++index) {
        const fenn::gui::CColor color = frames[static_cast<std::size_t>(index)];
        cairo_set_source_rgb(cr, color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
        cairo_rectangle(cr, index * width, 0, width, height);
        cairo_fill(cr);
    }
    cairo_destroy(cr);
    std::filesystem::create_directories((m_folder / name).parent_path());
    cairo_surface_write_to_png(surface, (m_folder / name).c_str());
    cairo_surface_destroy(surface);
}

void SkinFolder::writeXML(const std::string& xml)
{
    std::ofstream(m_folder / "skin.xml", std::ios::binary) << xml;
}

fenn::P<fenn::gui::skin::CSkinPackage> SkinFolder::load() const
{
    return fenn::make<fenn::gui::skin::CSkinPackage>(fenn::String::copyOf(path()));
}

std::string SkinFolder::parseError(const std::string& xml)
{
    writeXML(xml);
    try {
        load();
    } catch (const fenn::CParseError& error) {
        return error.getDescription().toStdString();
    }
    return std::string();
}

void SkinSetTest::loadSet(const std::string& xml, const std::vector<Image>& extraImages, const char* setId)
{
    const std::pair<const char*, fenn::gui::CColor> plain[] = {
        {"red", red},   {"green", green}, {"blue", blue},   {"yellow", yellow}, {"magenta", magenta},
        {"cyan", cyan}, {"grey", grey},   {"white", white}, {"black", black}};
    for (const auto& [name, colour] : plain) folder.writeImage(std::string(name) + ".png", {colour});
    for (const Image& image : extraImages) folder.writeImage(image.name, image.frames, image.width, image.height);
    folder.writeXML(xml);
    package = folder.load();
    set = package->getSkinSet(setId);
    ASSERT_TRUE(set) << setId;
}

void SkinSetTest::loadPackage(const std::string& packageFolder, const char* setId)
{
    package = fenn::make<fenn::gui::skin::CSkinPackage>(fenn::String::copyOf(packageFolder));
    set = package->getSkinSet(setId);
    ASSERT_TRUE(set) << setId;
}

StartedPackages::StartedPackages() : m_packages(fenn::startCore())
{
    m_packages->addPackage(fenn::make<fenn::posix::CPackage>());
    m_packages->addPackage(fenn::make<fenn::gui::CPackage>());
    m_packages->addPackage(fenn::make<fenn::gui::skin::CPackage>());
    m_packages->startAll();
}

StartedPackages::~StartedPackages()
{
    m_packages->stopAll();
}

}  // namespace skintest

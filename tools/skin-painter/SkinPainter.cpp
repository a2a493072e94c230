// Draws every image of the default skin package and writes them, at 1x and at
// 2x, into a folder:
//
//   tb_skin_painter <skin folder>      writes <name>.png and <name>@2x.png
//   tb_skin_painter --list             prints the image names, one a line
//
// The build's "skin-images" target runs it into data/skin/default. The output
// is the same bytes on every run on one machine: no time stamps, no random
// numbers, and text drawn without hinting from one named font family.

#include <exception>
#include <iostream>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

#include "PaintKit.h"

namespace {

constexpr int kScales[] = {1, 2};

skinpainter::ImageList collectImages()
{
    skinpainter::ImageList images;
    skinpainter::addWidgetImages(images);
    skinpainter::addStartScreenImages(images);
    skinpainter::addEditorImages(images);
    skinpainter::addSplashImages(images);
    std::set<std::string> names;
    for (const skinpainter::ImageJob& image : images) {
        if (!names.insert(image.name).second) throw std::logic_error("image drawn twice: " + image.name);
        if (image.width <= 0 || image.height <= 0 || image.frames <= 0)
            throw std::logic_error("image without a size: " + image.name);
    }
    return images;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: tb_skin_painter <skin folder> | --list\n";
        return 2;
    }
    try {
        const skinpainter::ImageList images = collectImages();
        const std::string_view argument = argv[1];
        if (argument == "--list") {
            for (const skinpainter::ImageJob& image : images) std::cout << image.name << ".png\n";
            return 0;
        }
        for (const skinpainter::ImageJob& image : images)
            for (int scale : kScales) skinpainter::writeImage(image, std::string(argument), scale);
        std::cout << "tb_skin_painter: " << images.size() << " images written to " << argument << '\n';
    } catch (const std::exception& error) {
        std::cerr << "tb_skin_painter: " << error.what() << '\n';
        return 1;
    }
    return 0;
}

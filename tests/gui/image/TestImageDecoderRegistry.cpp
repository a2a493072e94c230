#include <gtest/gtest.h>

#include <png.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <random>

#include <jpeglib.h>

#include "foundation/CMemoryIOStream.h"
#include "foundation/CStreamManager.h"
#include "foundation/CURIError.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "gui/CImageConversionError.h"
#include "gui/image/CImageDecoderRegistry.h"
#include "gui/image/RGBAPixels.h"
#include "tests/gui/image/ImageTestSupport.h"
#include "tests/support/TempFolder.h"

namespace {

using fenn::make;
using fenn::P;
using fenn::gui::CImageConversionError;
using fenn::gui::CImageDecoderRegistry;
using fenn::gui::decodeImage;
using fenn::gui::format::mng::CMNGError;
using namespace imagetest;

// What a quality 98 JPEG may change in a smooth gradient.
constexpr int kTolerance = 6;

// One small file of each format, all showing a 4 x 2 gradient.
struct SampleFiles
{
    Bytes png;
    Bytes jpeg;
    Bytes jng;
    Bytes tga;
};

SampleFiles makeSamples()
{
    SampleFiles files;
    PNGParameters png{4, 2, PNG_COLOR_TYPE_RGB_ALPHA, 8};
    JPEGParameters jpeg{4, 2, 3, JCS_RGB, JCS_UNKNOWN};
    Bytes tgaPixels;
    for (int y = 0; y < 2; ++y) {
        Bytes row;
        for (int x = 0; x < 4; ++x) {
            for (int channel = 0; channel < 3; ++channel) row.push_back(gradientSample(x, y, channel));
            row.push_back(200);
            jpeg.samples.insert(jpeg.samples.end(), row.end() - 4, row.end() - 1);
            tgaPixels.insert(tgaPixels.end(), {row[x * 4 + 2], row[x * 4 + 1], row[x * 4], row[x * 4 + 3]});
        }
        png.rows.push_back(row);
    }
    files.png = encodePNG(png);
    files.jpeg = encodeJPEG(jpeg);
    files.jng = {0x8B, 'J', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    appendChunk(files.jng, "JHDR", {0, 0, 0, 4, 0, 0, 0, 2, 14, 8, 8, 0, 8, 0, 0, 0});
    appendChunk(files.jng, "JDAT", files.jpeg);
    appendChunk(files.jng, "IDAT", deflate({0, 200, 200, 200, 200, 0, 200, 200, 200, 200}));
    appendChunk(files.jng, "IEND", {});
    files.tga = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 2, 0, 32, 0x28};
    files.tga.insert(files.tga.end(), tgaPixels.begin(), tgaPixels.end());
    return files;
}

void writeFile(const std::filesystem::path& path, const Bytes& bytes)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

class ImageDecoderRegistry : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_diskStreams = make<fenn::posix::CDiskStreamFactory>();
        fenn::CStreamManager::getInstance()->addFactory(m_diskStreams);
    }
    void TearDown() override { fenn::CStreamManager::getInstance()->removeFactory(m_diskStreams.get()); }

    fenn::CURI uriOf(const std::string& name) const
    {
        return fenn::CURI::fromPath(fenn::String::copyOf((m_folder / name).string()));
    }

    tbtest::TempFolder m_folder;
    P<fenn::posix::CDiskStreamFactory> m_diskStreams;
};

TEST_F(ImageDecoderRegistry, PicksTheDecoderByContentNotByName)
{
    const SampleFiles samples = makeSamples();
    const std::vector<std::tuple<std::string, Bytes, const char*, int>> files = {
        {"button.tga", samples.png, "PNG", 0},
        {"photo.png", samples.jpeg, "JPEG", kTolerance},
        {"frame.jpeg", samples.jng, "JNG", kTolerance},
        {"icon.jng", samples.tga, "TGA", 0},
    };
    const auto registry = CImageDecoderRegistry::getInstance();
    for (const auto& [name, bytes, format, tolerance] : files) {
        SCOPED_TRACE(name);
        EXPECT_EQ(registry->findDecoder(bytes)->getFormatName(), fenn::String(format));
        writeFile(m_folder / name, bytes);
        const auto image = decodeImage(uriOf(name));
        const bool jpegOnly = std::string(format) == "JPEG";
        EXPECT_TRUE(pixelsMatch(
            *image,
            [jpegOnly](int x, int y) {
                return RGBA{gradientSample(x, y, 0), gradientSample(x, y, 1), gradientSample(x, y, 2),
                            jpegOnly ? 255 : 200};
            },
            tolerance));
        EXPECT_TRUE(pixelsMatch(
            *decodeImage(bytes), [&image](int x, int y) { return pixelAt(*image, x, y); }, 1));
        const auto block = make<fenn::CMemoryBlock>();
        block->setSize(static_cast<std::int64_t>(bytes.size()));
        std::memcpy(block->getData(), bytes.data(), bytes.size());
        const auto stream = make<fenn::CMemoryIOStream>(block);
        const auto fromStream = registry->findDecoder(bytes)->decodeStream(*stream);
        EXPECT_TRUE(pixelsMatch(
            *fromStream, [&image](int x, int y) { return pixelAt(*image, x, y); }, 1));
    }

    EXPECT_THROW(decodeImage(uriOf("missing.png")), fenn::CFileNotFoundError);
    const Bytes gif = {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0, 0, 0};
    EXPECT_EQ(registry->findDecoder(gif), nullptr);
    EXPECT_THROW(decodeImage(gif), CImageConversionError);
    EXPECT_THROW(decodeImage(Bytes{}), CImageConversionError);
}

// A stream of zero bytes that never ends.
class CEndlessStream : public fenn::CObject, public virtual fenn::IInStream
{
public:
    void close() override {}
    bool isClosed() const override { return false; }
    fenn::StreamURI getURI() const override { return fenn::StreamURI(); }
    fenn::P<fenn::IStreamBase> getDelegate() const override { return nullptr; }
    void read(void* buffer, std::int32_t size) override { readSome(buffer, size); }
    std::int32_t readSome(void* buffer, std::int32_t size) override
    {
        std::memset(buffer, 0, static_cast<std::size_t>(size));
        return size;
    }
    std::int64_t skip(std::int64_t count) override { return count; }
    bool isAtEnd() override { return false; }
};

TEST_F(ImageDecoderRegistry, StopsReadingAnEndlessStream)
{
    CEndlessStream stream;
    EXPECT_THROW(CImageDecoderRegistry::getInstance()->decode(stream), CImageConversionError);
}

// Damaged copies of each sample: bytes changed at random places, or the
// file cut off. Each decodes or throws the decoders' own errors; under the
// sanitizers this also shows that no decoder reads outside its bytes.
TEST_F(ImageDecoderRegistry, DamagedFilesNeverEscapeTheDecodersErrors)
{
    const SampleFiles samples = makeSamples();
    std::mt19937 random(2024);
    for (const Bytes* sample : {&samples.png, &samples.jpeg, &samples.jng, &samples.tga}) {
        for (int round = 0; round < 300; ++round) {
            Bytes file = *sample;
            if (round % 4 == 0) {
                file.resize(random() % file.size());
            } else {
                for (int change = 0; change < 1 + round % 3; ++change) {
                    file[random() % file.size()] = static_cast<std::uint8_t>(random());
                }
            }
            try {
                const auto image = decodeImage(file);
                EXPECT_LE(image->getWidth(), fenn::gui::kMaxImageSide);
            } catch (const CImageConversionError&) {
            } catch (const CMNGError&) {
            }
        }
    }
}

}  // namespace

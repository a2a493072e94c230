#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "foundation/CStreamManager.h"
#include "foundation/TCast.h"
#include "foundation/posix/CDiskStream.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/support/TempFolder.h"

using namespace fenn;
using fenn::posix::CDiskStreamFactory;

namespace {

void writeFile(const std::filesystem::path& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// "file://" and the path with every byte outside the unreserved set and
// '/' written as %XX.
String fileURI(const std::filesystem::path& path)
{
    std::string uri = "file://";
    for (const unsigned char c : path.string()) {
        if (std::isalnum(c) != 0 || std::string_view("-._~/").find(static_cast<char>(c)) != std::string_view::npos) {
            uri += static_cast<char>(c);
        } else {
            static const char hex[] = "0123456789ABCDEF";
            uri += '%';
            uri += hex[c >> 4];
            uri += hex[c & 15];
        }
    }
    return String::copyOf(uri);
}

String pathText(const std::filesystem::path& path)
{
    return String::copyOf(path.string());
}

std::string readText(IInStream& stream, std::int32_t size)
{
    std::string text(static_cast<std::size_t>(size), '\0');
    stream.read(text.data(), size);
    return text;
}

TEST(DiskStreams, ReadWriteSeekAndEnd)
{
    tbtest::TempFolder folder;
    const String uri = pathText(folder / "data.bin");
    auto factory = make<CDiskStreamFactory>();
    const P<ISeekableIOStream> stream =
        factory->openSeekableIOStream(uri, StreamShare::read, StreamCreate::createEmpty, DeleteOnClose::no);
    stream->write("hello world", 11);
    EXPECT_EQ(stream->getSize(), 11);
    EXPECT_TRUE(stream->isAtEnd());

    // At the end: an empty read succeeds, readSome gives 0, an exact read
    // throws with the URI in its text.
    char byte = 0;
    EXPECT_NO_THROW(stream->read(&byte, 0));
    EXPECT_EQ(stream->readSome(&byte, 1), 0);
    try {
        stream->read(&byte, 1);
        FAIL() << "read past the end";
    } catch (const CEndOfStreamError& error) {
        EXPECT_EQ(error.getDescription().toStdString(),
                  "Unexpected end of data stream (uri: '" + uri.toStdString() + "').");
    }

    stream->seek(0);
    EXPECT_EQ(readText(*stream, 5), "hello");
    const P<IStreamMarker> marker = stream->createMarker();
    EXPECT_EQ(stream->skip(3), 3);
    EXPECT_EQ(stream->skip(100), 3);
    EXPECT_TRUE(stream->isAtEnd());
    stream->resetTo(*marker);
    EXPECT_EQ(stream->getPos(), 5);
    stream->seekRelative(-1);
    char tail[8];
    EXPECT_EQ(stream->readSome(tail, 8), 7);
    EXPECT_EQ(std::string(tail, 7), "o world");
    EXPECT_THROW(stream->seek(-1), CInvalidArgError);

    // The IO stream carries the typed reads and writes itself.
    const P<ISeekableDataOutStream> data = TCast<ISeekableDataOutStream>(stream);
    ASSERT_NE(data, nullptr);
    data->seek(0);
    data->writeUInt32(0x0A0B0C0D);
    const P<ISeekableDataInStream> dataIn = TCast<ISeekableDataInStream>(stream);
    ASSERT_NE(dataIn, nullptr);
    dataIn->seek(0);
    EXPECT_EQ(dataIn->readUInt32(), 0x0A0B0C0Du);
    EXPECT_EQ(readFile(folder / "data.bin"), "\x0D\x0C\x0B\x0Ao world");

    stream->close();
    EXPECT_TRUE(stream->isClosed());
    EXPECT_NO_THROW(stream->close());
    EXPECT_THROW(stream->readSome(&byte, 1), CStreamClosedError);
    EXPECT_THROW(stream->write("x", 1), CStreamClosedError);
    EXPECT_THROW(stream->getPos(), CStreamClosedError);

    // An input stream reads only.
    const P<IInStream> input = factory->openInStream(uri);
    EXPECT_EQ(TCast<IOutStream>(input), nullptr);
    EXPECT_NE(TCast<ISeekableDataInStream>(input), nullptr);
}

TEST(DiskStreams, CreateModes)
{
    struct Case
    {
        StreamCreate create;
        bool exists;
        bool opens;
        std::string contentAfterWritingX;
    };
    const Case cases[] = {
        {StreamCreate::openExisting, false, false, ""}, {StreamCreate::openExisting, true, true, "xld"},
        {StreamCreate::createEmpty, false, true, "x"},  {StreamCreate::createEmpty, true, true, "x"},
        {StreamCreate::openOrCreate, false, true, "x"}, {StreamCreate::openOrCreate, true, true, "xld"},
    };
    auto factory = make<CDiskStreamFactory>();
    for (const Case& c : cases) {
        const auto trace = ::testing::Message() << static_cast<int>(c.create) << (c.exists ? " existing" : " missing");
        tbtest::TempFolder folder;
        const auto path = folder / "file.txt";
        if (c.exists) writeFile(path, "old");
        const P<IOutStream> stream =
            factory->tryOpenOutStream(pathText(path), StreamShare::exclusive, c.create, DeleteOnClose::no);
        EXPECT_EQ(stream != nullptr, c.opens) << trace;
        if (!stream) {
            EXPECT_FALSE(std::filesystem::exists(path)) << trace;
            EXPECT_THROW(factory->openOutStream(pathText(path), StreamShare::exclusive, c.create, DeleteOnClose::no),
                         CFileNotFoundError);
            continue;
        }
        stream->write("x", 1);
        stream->close();
        EXPECT_EQ(readFile(path), c.contentAfterWritingX) << trace;
    }
}

TEST(DiskStreams, ExclusiveShareLocksOutOtherExclusiveOpeners)
{
    tbtest::TempFolder folder;
    const String uri = pathText(folder / "locked.bin");
    writeFile(folder / "locked.bin", "keep");
    auto factory = make<CDiskStreamFactory>();
    P<IIOStream> holder =
        factory->openIOStream(uri, StreamShare::exclusive, StreamCreate::openExisting, DeleteOnClose::no);

    // A second exclusive opener fails, and its createEmpty leaves the held file alone.
    EXPECT_THROW(factory->openOutStream(uri, StreamShare::exclusive, StreamCreate::createEmpty, DeleteOnClose::no),
                 CStreamError);
    EXPECT_EQ(readFile(folder / "locked.bin"), "keep");
    // Shared openers take no lock.
    EXPECT_NE(factory->openInStream(uri), nullptr);
    EXPECT_NE(factory->openOutStream(uri, StreamShare::readWriteDelete, StreamCreate::openExisting, DeleteOnClose::no),
              nullptr);

    holder->close();
    EXPECT_NE(factory->openOutStream(uri, StreamShare::exclusive, StreamCreate::openExisting, DeleteOnClose::no),
              nullptr);
}

TEST(DiskStreams, DeleteOnCloseRemovesTheFile)
{
    tbtest::TempFolder folder;
    auto factory = make<CDiskStreamFactory>();
    const auto closed = folder / "closed.tmp";
    P<IOutStream> stream =
        factory->openOutStream(pathText(closed), StreamShare::read, StreamCreate::createEmpty, DeleteOnClose::yes);
    stream->write("temp", 4);
    EXPECT_EQ(readFile(closed), "temp");
    stream->close();
    EXPECT_FALSE(std::filesystem::exists(closed));

    // Letting go of the last reference closes the stream too.
    const auto dropped = folder / "dropped.tmp";
    stream = factory->openSeekableIOStream(pathText(dropped), StreamShare::exclusive, StreamCreate::openOrCreate,
                                           DeleteOnClose::yes);
    EXPECT_TRUE(std::filesystem::exists(dropped));
    stream = nullptr;
    EXPECT_FALSE(std::filesystem::exists(dropped));

    const auto kept = folder / "kept.tmp";
    factory->openOutStream(pathText(kept), StreamShare::read, StreamCreate::createEmpty, DeleteOnClose::no)->close();
    EXPECT_TRUE(std::filesystem::exists(kept));
}

TEST(DiskStreams, InvalidModesAreRefused)
{
    tbtest::TempFolder folder;
    const String uri = pathText(folder / "never.bin");
    auto factory = make<CDiskStreamFactory>();
    struct Case
    {
        int share, create, deleteOnClose;
    };
    const Case cases[] = {{3, 1, 0}, {-1, 1, 0}, {0, 0, 0}, {0, 4, 0}, {1, 2, 2}};
    for (const Case& c : cases) {
        const auto share = static_cast<StreamShare>(c.share);
        const auto create = static_cast<StreamCreate>(c.create);
        const auto deleteOnClose = static_cast<DeleteOnClose>(c.deleteOnClose);
        EXPECT_THROW(factory->tryOpenOutStream(uri, share, create, deleteOnClose), CInvalidArgError);
        EXPECT_THROW(factory->openSeekableIOStream(uri, share, create, deleteOnClose), CInvalidArgError);
        EXPECT_THROW(posix::CDiskOutStream::tryOpen((folder / "never.bin").string(), uri, share, create, deleteOnClose),
                     CInvalidArgError);
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "never.bin"));
}

TEST(DiskStreamFactory, FileURIsAndPlainPaths)
{
    tbtest::TempFolder folder;
    const auto awkward = folder / "a b %20 #1 ?x Grüße €.txt";
    writeFile(awkward, "awkward");
    const std::string base = fileURI(folder.path()).toStdString();
    auto factory = make<CDiskStreamFactory>();

    struct Case
    {
        std::string uri;
        const char* expected;  // the content read, "null" or "format"
    };
    const Case cases[] = {
        {fileURI(awkward).toStdString(), "awkward"},
        {"FILE:" + base.substr(7) + "/a%20b%20%2520%20%231%20%3Fx%20Gr%C3%BC%C3%9Fe%20%E2%82%AC.txt", "awkward"},
        {uriText(CURI::fromPath(pathText(awkward))).toStdString(), "awkward"},
        {"http://example.com/x.wav", "null"},
        {"cd+a.b-c:/x", "null"},
        {"file://host" + awkward.string(), "format"},
        {"file://", "format"},
        {"file:relative.txt", "format"},
        {base + "/x%2", "format"},
        {base + "/x%zz", "format"},
        {base + "/x%00y", "format"},
        {base + "/x.wav#fragment", "format"},
        {base + "/missing.txt", "null"},
    };
    for (const Case& c : cases) {
        const String uri = String::copyOf(c.uri);
        const std::string expected = c.expected;
        if (expected == "format") {
            EXPECT_THROW(factory->tryOpenInStream(uri), CURIFormatError) << c.uri;
            continue;
        }
        const P<IInStream> stream = factory->tryOpenInStream(uri);
        if (expected == "null") {
            EXPECT_EQ(stream, nullptr) << c.uri;
            continue;
        }
        ASSERT_NE(stream, nullptr) << c.uri;
        EXPECT_EQ(readText(*stream, 7), expected) << c.uri;
        EXPECT_EQ(uriText(stream->getURI()).toStdString(), c.uri);
    }

    // Through the manager a missing file is CFileNotFoundError with the URI;
    // a folder is no stream.
    auto manager = make<CStreamManager>();
    manager->addFactory(factory);
    const String missing = String::copyOf(base + "/missing.txt");
    try {
        manager->openSeekableInStream(missing);
        FAIL() << "opened a missing file";
    } catch (const CFileNotFoundError& error) {
        EXPECT_EQ(uriText(error.getURI()).toStdString(), missing.toStdString());
    }
    EXPECT_THROW(manager->openInStream(String::copyOf(base)), CStreamError);
}

}  // namespace

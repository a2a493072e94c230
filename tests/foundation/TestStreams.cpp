#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "foundation/CDataInStream.h"
#include "foundation/CDataOutStream.h"
#include "foundation/CMemoryIOStream.h"
#include "foundation/CResetableInStreamEmulator.h"
#include "foundation/CStreamManager.h"
#include "foundation/TCast.h"

using namespace fenn;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes contents(const CMemoryIOStream& stream)
{
    const P<IMemoryBlock> block = stream.getMemoryBlock();
    return Bytes(block->getData(), block->getData() + block->getSize());
}

P<CMemoryIOStream> memoryStreamWith(const Bytes& bytes)
{
    auto stream = make<CMemoryIOStream>();
    stream->write(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    stream->seek(0);
    return stream;
}

std::string readText(IInStream& stream, std::int32_t size)
{
    std::string text(static_cast<std::size_t>(size), '\0');
    stream.read(text.data(), size);
    return text;
}

// A forward-only source, like a network connection: it hands out at most
// pieceSize bytes per readSome.
class CForwardOnlyStream : public CObject, public virtual IInStream
{
public:
    CForwardOnlyStream(std::string data, std::int32_t pieceSize) : m_data(std::move(data)), m_pieceSize(pieceSize) {}

    void close() override { m_closed = true; }
    bool isClosed() const override { return m_closed; }
    StreamURI getURI() const override { return CURI("test://forward"); }
    P<IStreamBase> getDelegate() const override { return nullptr; }

    void read(void* buffer, std::int32_t size) override
    {
        for (std::int32_t done = 0; done < size;) {
            const std::int32_t count = readSome(static_cast<char*>(buffer) + done, size - done);
            if (count == 0) throw CEndOfStreamError(getURI());
            done += count;
        }
    }
    std::int32_t readSome(void* buffer, std::int32_t size) override
    {
        const auto count = static_cast<std::int32_t>(std::min<std::size_t>(
            {static_cast<std::size_t>(size), static_cast<std::size_t>(m_pieceSize), m_data.size() - m_pos}));
        std::memcpy(buffer, m_data.data() + m_pos, static_cast<std::size_t>(count));
        m_pos += static_cast<std::size_t>(count);
        return count;
    }
    std::int64_t skip(std::int64_t count) override
    {
        const auto skipped = std::min<std::size_t>(static_cast<std::size_t>(count), m_data.size() - m_pos);
        m_pos += skipped;
        return static_cast<std::int64_t>(skipped);
    }
    bool isAtEnd() override { return m_pos == m_data.size(); }

private:
    std::string m_data;
    std::int32_t m_pieceSize;
    std::size_t m_pos = 0;
    bool m_closed = false;
};

TEST(MemoryStream, WritesGrowsAndReadsBack)
{
    auto stream = make<CMemoryIOStream>();
    const char nine[] = "123456789";
    stream->write(nine, 9);
    EXPECT_EQ(stream->getSize(), 9);
    EXPECT_TRUE(stream->isAtEnd());
    stream->seek(0);
    EXPECT_EQ(readText(*stream, 9), "123456789");

    // At the end: an empty read succeeds, readSome gives 0, an exact read throws.
    char byte = 0;
    EXPECT_NO_THROW(stream->read(&byte, 0));
    EXPECT_EQ(stream->readSome(&byte, 1), 0);
    try {
        stream->read(&byte, 1);
        FAIL() << "read past the end";
    } catch (const CEndOfStreamError& error) {
        EXPECT_EQ(error.getDescription().toStdString(), "Unexpected end of data stream (uri: '<uri unknown>').");
    }

    // Writing after a seek past the end fills the gap with zeros; overwriting keeps the size.
    stream->seek(11);
    stream->write("x", 1);
    stream->seek(1);
    stream->write("AB", 2);
    EXPECT_EQ(contents(*stream), (Bytes{'1', 'A', 'B', '4', '5', '6', '7', '8', '9', 0, 0, 'x'}));

    // Skip stops at the end; seekRelative moves from the current position.
    stream->seek(5);
    EXPECT_EQ(stream->skip(4), 4);
    EXPECT_EQ(stream->skip(100), 3);
    EXPECT_EQ(stream->getPos(), 12);
    stream->seekRelative(-3);
    EXPECT_EQ(stream->getPos(), 9);
    EXPECT_THROW(stream->seekRelative(-10), CInvalidArgError);
    EXPECT_THROW(stream->seek(-1), CInvalidArgError);
}

TEST(MemoryStream, MarkersReturnOnlyToTheirOwnStream)
{
    auto stream = memoryStreamWith({'a', 'b', 'c', 'd'});
    stream->skip(1);
    const P<IStreamMarker> marker = stream->createMarker();
    EXPECT_EQ(marker->getPos(), 1);
    stream->seekToEnd();
    stream->resetTo(*marker);
    EXPECT_EQ(readText(*stream, 3), "bcd");

    auto other = memoryStreamWith({'z'});
    EXPECT_THROW(other->resetTo(*marker), CInvalidArgError);

    stream->close();
    EXPECT_TRUE(stream->isClosed());
    char byte;
    EXPECT_THROW(stream->readSome(&byte, 1), CStreamClosedError);
    EXPECT_THROW(stream->write("a", 1), CStreamClosedError);
    EXPECT_THROW(stream->resetTo(*marker), CStreamClosedError);
}

// Every typed value, written through the data wrapper, against its bytes.
TEST(DataStreams, TypedValuesAreLittleEndianAtFullWidth)
{
    auto memory = make<CMemoryIOStream>();
    auto out = make<CDataOutStream>(memory);
    out->writeInt8(-2);
    out->writeUInt8(0xFE);
    out->writeInt16(-2);
    out->writeUInt16(0x1234);
    out->writeInt32(-2);
    out->writeUInt32(0x12345678);
    out->writeInt64(-2);
    out->writeUInt64(0x0102030405060708);
    out->writeFloat(1.5f);
    out->writeDouble(-2.25);
    out->writeBool(true);
    out->writeBool(false);
    const Bytes expected = {
        0xFE,                                            // int8 -2
        0xFE,                                            // uint8
        0xFE, 0xFF,                                      // int16 -2
        0x34, 0x12,                                      // uint16
        0xFE, 0xFF, 0xFF, 0xFF,                          // int32 -2
        0x78, 0x56, 0x34, 0x12,                          // uint32
        0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,  // int64 -2
        0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01,  // uint64
        0x00, 0x00, 0xC0, 0x3F,                          // float 1.5
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0xC0,  // double -2.25
        0x01, 0x00,                                      // true, false
        0x02,                                            // any non-zero byte reads as true
    };
    memory->write(&expected.back(), 1);
    EXPECT_EQ(contents(*memory), expected);

    memory->seek(0);
    auto in = make<CDataInStream>(memory);
    EXPECT_EQ(in->readInt8(), -2);
    EXPECT_EQ(in->readUInt8(), 0xFE);
    EXPECT_EQ(in->readInt16(), -2);
    EXPECT_EQ(in->readUInt16(), 0x1234);
    EXPECT_EQ(in->readInt32(), -2);
    EXPECT_EQ(in->readUInt32(), 0x12345678u);
    EXPECT_EQ(in->readInt64(), -2);
    EXPECT_EQ(in->readUInt64(), 0x0102030405060708u);
    EXPECT_EQ(in->readFloat(), 1.5f);
    EXPECT_EQ(in->readDouble(), -2.25);
    EXPECT_TRUE(in->readBool());
    EXPECT_FALSE(in->readBool());
    EXPECT_TRUE(in->readBool());
    EXPECT_TRUE(in->isAtEnd());
    EXPECT_THROW(in->readInt16(), CEndOfStreamError);
}

// Threads share one stream; every value arrives whole and each thread's
// values stay in their order.
TEST(DataStreams, ValuesFromSeveralThreadsStayWhole)
{
    constexpr std::uint32_t kThreads = 4;
    constexpr std::uint32_t kValuesPerThread = 20000;
    auto memory = make<CMemoryIOStream>();
    auto out = make<CDataOutStream>(memory);
    std::latch start(kThreads);
    std::vector<std::thread> writers;
    for (std::uint32_t thread = 0; thread < kThreads; ++thread) {
        writers.emplace_back([&out, &start, thread] {
            start.arrive_and_wait();
            for (std::uint32_t i = 0; i < kValuesPerThread; ++i) out->writeUInt32(thread << 24 | i);
        });
    }
    for (std::thread& writer : writers) writer.join();

    EXPECT_EQ(memory->getSize(), kThreads * kValuesPerThread * 4);
    memory->seek(0);
    auto in = make<CDataInStream>(memory);
    std::vector<std::uint32_t> next(kThreads, 0);
    while (!in->isAtEnd()) {
        const std::uint32_t value = in->readUInt32();
        const std::uint32_t thread = value >> 24;
        ASSERT_LT(thread, kThreads);
        ASSERT_EQ(value & 0xFFFFFF, next[thread]);
        ++next[thread];
    }
    EXPECT_EQ(next, std::vector<std::uint32_t>(kThreads, kValuesPerThread));
}

TEST(DataStreams, StringsAreByteCountAndUTF8)
{
    struct Case
    {
        std::string text;
        Bytes bytes;
    };
    const Case cases[] = {
        {"", {0, 0, 0, 0}},
        {"ab", {2, 0, 0, 0, 'a', 'b'}},
        {"G\xC3\xBC\xE2\x82\xAC", {6, 0, 0, 0, 'G', 0xC3, 0xBC, 0xE2, 0x82, 0xAC}},
    };
    for (const Case& c : cases) {
        auto memory = make<CMemoryIOStream>();
        make<CDataOutStream>(memory)->writeString(String::copyOf(c.text));
        EXPECT_EQ(contents(*memory), c.bytes) << c.text;
        memory->seek(0);
        const String read = make<CDataInStream>(memory)->readString();
        EXPECT_EQ(read.toStdString(), c.text);
        EXPECT_EQ(read.isEmpty(), c.text.empty());
        EXPECT_TRUE(memory->isAtEnd());
    }

    // A negative count is damage; a count past the data is a short stream.
    EXPECT_THROW(make<CDataInStream>(memoryStreamWith({0xFF, 0xFF, 0xFF, 0xFF}))->readString(), CStreamError);
    EXPECT_THROW(make<CDataInStream>(memoryStreamWith({0x00, 0x00, 0x00, 0x7F, 'a'}))->readString(), CEndOfStreamError);
}

TEST(DataStreams, WrapperOffersOnlyWhatTheStreamHas)
{
    auto forward = make<CDataInStream>(make<CForwardOnlyStream>("abcd", 4));
    EXPECT_THROW(forward->seek(0), CMethodNotImplementedError);
    EXPECT_THROW(forward->getPos(), CMethodNotImplementedError);
    EXPECT_THROW(forward->createMarker(), CMethodNotImplementedError);
    EXPECT_EQ(TCast<ISeekableInStream>(forward), nullptr);
    EXPECT_EQ(TCast<IResetableStream>(forward), nullptr);
    EXPECT_EQ(TCast<IResetableDataInStream>(forward), nullptr);
    EXPECT_EQ(TCast<IDataInStream>(forward).get(), forward.get());
    EXPECT_EQ(forward->readUInt16(), 0x6261);

    // Over a resetable stream markers work, seeking does not.
    auto resetable = make<CDataInStream>(make<CResetableInStreamEmulator>(make<CForwardOnlyStream>("abcd", 4)));
    EXPECT_NE(TCast<IResetableDataInStream>(resetable), nullptr);
    EXPECT_EQ(TCast<ISeekableDataInStream>(resetable), nullptr);
    EXPECT_EQ(TCast<ISeekableStream>(resetable), nullptr);
    EXPECT_THROW(resetable->seekToEnd(), CMethodNotImplementedError);
    const P<IStreamMarker> marker = resetable->createMarker();
    EXPECT_EQ(resetable->readUInt8(), 'a');
    resetable->resetTo(*marker);
    EXPECT_EQ(resetable->readUInt16(), 0x6261);

    // Over a seekable stream everything is there, and what the wrapper lacks
    // (writing) is found on the stream it wraps.
    auto memory = memoryStreamWith({1, 2, 3});
    auto seekable = make<CDataInStream>(memory);
    EXPECT_EQ(TCast<ISeekableDataInStream>(seekable).get(), seekable.get());
    EXPECT_EQ(TCast<IOutStream>(seekable).get(), memory.get());
    seekable->seek(2);
    EXPECT_EQ(seekable->readUInt8(), 3);

    auto out = make<CDataOutStream>(memory);
    EXPECT_EQ(TCast<ISeekableDataOutStream>(out).get(), out.get());
    out->seekToEnd();
    out->writeUInt8(4);
    EXPECT_EQ(contents(*memory), (Bytes{1, 2, 3, 4}));
}

TEST(ResetableStreamEmulator, ReplaysFromTheEarlierOfTwoMarkersWithoutLoss)
{
    auto emulator = make<CResetableInStreamEmulator>(make<CForwardOnlyStream>("0123456789abcdefghij", 3));
    EXPECT_EQ(readText(*emulator, 2), "01");
    P<IStreamMarker> first = emulator->createMarker();
    EXPECT_EQ(readText(*emulator, 3), "234");
    P<IStreamMarker> second = emulator->createMarker();
    EXPECT_EQ(second->getPos(), 5);
    EXPECT_EQ(readText(*emulator, 4), "5678");

    // Replay of the seven kept bytes, then on at the source.
    emulator->resetTo(*first);
    EXPECT_EQ(readText(*emulator, 10), "23456789ab");
    first = nullptr;

    // The second marker still keeps everything after it.
    emulator->resetTo(*second);
    EXPECT_EQ(emulator->getPos(), 5);
    EXPECT_EQ(readText(*emulator, 3), "567");
    // Dropping the last marker in the middle of a replay loses nothing.
    second = nullptr;
    EXPECT_EQ(readText(*emulator, 12), "89abcdefghij");
    EXPECT_TRUE(emulator->isAtEnd());
    char byte;
    EXPECT_EQ(emulator->readSome(&byte, 1), 0);
    EXPECT_NO_THROW(emulator->read(&byte, 0));
    EXPECT_THROW(emulator->read(&byte, 1), CEndOfStreamError);
    EXPECT_FALSE(emulator->isSizeKnown());
}

TEST(ResetableStreamEmulator, SkippedBytesAreKeptForReplay)
{
    auto emulator = make<CResetableInStreamEmulator>(make<CForwardOnlyStream>("0123456789", 4));
    EXPECT_EQ(emulator->skip(1), 1);
    const P<IStreamMarker> marker = emulator->createMarker();
    EXPECT_EQ(emulator->skip(6), 6);
    emulator->resetTo(*marker);
    EXPECT_EQ(emulator->skip(2), 2);
    EXPECT_EQ(readText(*emulator, 5), "34567");
    EXPECT_EQ(emulator->skip(100), 2);
    EXPECT_TRUE(emulator->isAtEnd());

    auto other = make<CResetableInStreamEmulator>(make<CForwardOnlyStream>("x", 1));
    EXPECT_THROW(other->resetTo(*marker), CInvalidArgError);
    emulator->close();
    EXPECT_THROW(emulator->resetTo(*marker), CStreamClosedError);
}

// Answers for the URIs that begin with its prefix and logs who was asked.
class CPrefixFactory : public CObject, public CStreamFactoryBase
{
public:
    CPrefixFactory(std::string prefix, std::string name, std::vector<std::string>& asked)
        : m_prefix(std::move(prefix)), m_name(std::move(name)), m_asked(asked)
    {
    }

    P<IInStream> tryOpenInStream(const StreamURI& uri) override
    {
        m_asked.push_back(m_name);
        if (!uriText(uri).toStdString().starts_with(m_prefix)) return nullptr;
        auto stream = make<CMemoryIOStream>(nullptr, uri);
        stream->write(m_name.data(), static_cast<std::int32_t>(m_name.size()));
        stream->seek(0);
        return stream;
    }
    P<IResetableInStream> tryOpenResetableInStream(const StreamURI&) override { return nullptr; }
    P<ISeekableInStream> tryOpenSeekableInStream(const StreamURI&) override { return nullptr; }
    P<IOutStream> tryOpenOutStream(const StreamURI&, StreamShare, StreamCreate, DeleteOnClose) override
    {
        return nullptr;
    }
    P<IResetableOutStream> tryOpenResetableOutStream(const StreamURI&, StreamShare, StreamCreate,
                                                     DeleteOnClose) override
    {
        return nullptr;
    }
    P<ISeekableOutStream> tryOpenSeekableOutStream(const StreamURI&, StreamShare, StreamCreate, DeleteOnClose) override
    {
        return nullptr;
    }
    P<IIOStream> tryOpenIOStream(const StreamURI&, StreamShare, StreamCreate, DeleteOnClose) override
    {
        return nullptr;
    }
    P<IResetableIOStream> tryOpenResetableIOStream(const StreamURI&, StreamShare, StreamCreate, DeleteOnClose) override
    {
        return nullptr;
    }
    P<ISeekableIOStream> tryOpenSeekableIOStream(const StreamURI&, StreamShare, StreamCreate, DeleteOnClose) override
    {
        return nullptr;
    }

private:
    std::string m_prefix;
    std::string m_name;
    std::vector<std::string>& m_asked;
};

TEST(StreamManager, AsksFactoriesInTheOrderTheyWereAdded)
{
    std::vector<std::string> asked;
    auto manager = make<CStreamManager>();
    auto early = make<CPrefixFactory>("mem:", "early", asked);
    manager->addFactory(early);
    manager->addFactory(make<CPrefixFactory>("m", "late", asked));

    struct Case
    {
        const char* uri;
        const char* servedBy;
        std::vector<std::string> asked;
    };
    const Case cases[] = {{"mem:a", "early", {"early"}}, {"mx:a", "late", {"early", "late"}}};
    for (const Case& c : cases) {
        asked.clear();
        const P<IInStream> stream = manager->openInStream(String(c.uri));
        EXPECT_EQ(readText(*stream, static_cast<std::int32_t>(std::strlen(c.servedBy))), c.servedBy) << c.uri;
        EXPECT_EQ(asked, c.asked) << c.uri;
    }

    EXPECT_EQ(manager->tryOpenInStream(String("none:a")), nullptr);
    try {
        manager->openInStream(String("none:a"));
        FAIL() << "opened a URI that no factory serves";
    } catch (const CFileNotFoundError& error) {
        EXPECT_EQ(uriText(error.getURI()).toStdString(), "none:a");
    }

    manager->removeFactory(early.get());
    asked.clear();
    EXPECT_EQ(readText(*manager->openInStream(CURI("mem:a")), 4), "late");
    EXPECT_EQ(asked, std::vector<std::string>{"late"});

    // Modes outside their lists are refused before any factory is asked.
    asked.clear();
    EXPECT_THROW(manager->tryOpenOutStream(CURI("mem:a"), static_cast<StreamShare>(3), StreamCreate::openExisting,
                                           DeleteOnClose::no),
                 CInvalidArgError);
    EXPECT_THROW(
        manager->openIOStream(CURI("mem:a"), StreamShare::read, static_cast<StreamCreate>(0), DeleteOnClose::no),
        CInvalidArgError);
    EXPECT_TRUE(asked.empty());
}

}  // namespace

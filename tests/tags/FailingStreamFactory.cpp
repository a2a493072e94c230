#include "tests/tags/FailingStreamFactory.h"

#include "foundation/CStreamManager.h"
#include "foundation/posix/CDiskStreamFactory.h"
#include "tests/tags/TagTestSupport.h"

namespace tbtest {

namespace {

// Passes everything to a seekable disk stream and fails reads past a limit.
class FailingInStream : public fenn::CObject, public virtual fenn::ISeekableInStream
{
public:
    FailingInStream(fenn::P<fenn::ISeekableInStream> stream, std::int64_t failAfter)
        : m_stream(std::move(stream)), m_remaining(failAfter)
    {
    }

    void close() override { m_stream->close(); }
    bool isClosed() const override { return m_stream->isClosed(); }
    fenn::StreamURI getURI() const override { return m_stream->getURI(); }
    fenn::P<fenn::IStreamBase> getDelegate() const override { return m_stream; }

    void read(void* buffer, std::int32_t size) override
    {
        take(size);
        m_stream->read(buffer, size);
    }
    std::int32_t readSome(void* buffer, std::int32_t size) override
    {
        take(size);
        return m_stream->readSome(buffer, size);
    }
    std::int64_t skip(std::int64_t count) override { return m_stream->skip(count); }
    bool isAtEnd() override { return m_stream->isAtEnd(); }

    std::int64_t getPos() override { return m_stream->getPos(); }
    std::int64_t getSize() override { return m_stream->getSize(); }
    bool isSizeKnown() override { return m_stream->isSizeKnown(); }
    fenn::P<fenn::IStreamMarker> createMarker() override { return m_stream->createMarker(); }
    void resetTo(const fenn::IStreamMarker& marker) override { m_stream->resetTo(marker); }
    void seek(std::int64_t pos) override { m_stream->seek(pos); }
    void seekRelative(std::int64_t delta) override { m_stream->seekRelative(delta); }
    void seekToEnd() override { m_stream->seekToEnd(); }

private:
    void take(std::int32_t size)
    {
        if (size > m_remaining)
            throw fenn::CStreamError(getURI(), fenn::String("Simulated read failure (uri: '%URI%')."));
        m_remaining -= size;
    }

    fenn::P<fenn::ISeekableInStream> m_stream;
    std::int64_t m_remaining;
};

}  // namespace

FailingStreamFactory::FailingStreamFactory(fenn::CURI target, std::int64_t failAfter)
    : m_target(std::move(target)), m_failAfter(failAfter)
{
}

fenn::P<fenn::IInStream> FailingStreamFactory::tryOpenInStream(const fenn::StreamURI& uri)
{
    return tryOpenSeekableInStream(uri);
}

fenn::P<fenn::IResetableInStream> FailingStreamFactory::tryOpenResetableInStream(const fenn::StreamURI& uri)
{
    return tryOpenSeekableInStream(uri);
}

fenn::P<fenn::ISeekableInStream> FailingStreamFactory::tryOpenSeekableInStream(const fenn::StreamURI& uri)
{
    if (!uri.equals(m_target)) return nullptr;
    auto disk = fenn::make<fenn::posix::CDiskStreamFactory>();
    ++m_openCount;
    return fenn::make<FailingInStream>(disk->openSeekableInStream(uri), m_failAfter);
}

ScopedStreamFactory::ScopedStreamFactory(fenn::P<fenn::IStreamFactory> factory) : m_factory(std::move(factory))
{
    // The manager asks in the order of adding: the disk streams go out and
    // come back behind this one.
    const fenn::P<fenn::CStreamManager> manager = fenn::CStreamManager::getInstance();
    const fenn::P<fenn::IStreamFactory> disk = getDiskStreamFactory();
    manager->removeFactory(disk.get());
    manager->addFactory(m_factory);
    manager->addFactory(disk);
}

ScopedStreamFactory::~ScopedStreamFactory()
{
    fenn::CStreamManager::getInstance()->removeFactory(m_factory.get());
}

}  // namespace tbtest

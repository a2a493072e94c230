#pragma once

#include <cstdint>

#include "foundation/CObject.h"
#include "foundation/IStreamFactory.h"

namespace tbtest {

// A seam for saves that fail half way: for one URI it opens the file for
// reading through the disk streams and hands out a stream that throws
// CStreamError once more than failAfter bytes have been read. Every other
// request goes on to the next factory. While a ScopedStreamFactory holds
// it, it is the first factory that the stream manager asks.
class FailingStreamFactory : public fenn::CObject, public fenn::CStreamFactoryBase
{
public:
    FailingStreamFactory(fenn::CURI target, std::int64_t failAfter);

    fenn::P<fenn::IInStream> tryOpenInStream(const fenn::StreamURI& uri) override;
    fenn::P<fenn::IResetableInStream> tryOpenResetableInStream(const fenn::StreamURI& uri) override;
    fenn::P<fenn::ISeekableInStream> tryOpenSeekableInStream(const fenn::StreamURI& uri) override;
    fenn::P<fenn::IOutStream> tryOpenOutStream(const fenn::StreamURI&, fenn::StreamShare, fenn::StreamCreate,
                                               fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::IResetableOutStream> tryOpenResetableOutStream(const fenn::StreamURI&, fenn::StreamShare,
                                                                 fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::ISeekableOutStream> tryOpenSeekableOutStream(const fenn::StreamURI&, fenn::StreamShare,
                                                               fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::IIOStream> tryOpenIOStream(const fenn::StreamURI&, fenn::StreamShare, fenn::StreamCreate,
                                             fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::IResetableIOStream> tryOpenResetableIOStream(const fenn::StreamURI&, fenn::StreamShare,
                                                               fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::ISeekableIOStream> tryOpenSeekableIOStream(const fenn::StreamURI&, fenn::StreamShare,
                                                             fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }

    // How many streams it handed out.
    int getOpenCount() const { return m_openCount; }

private:
    fenn::CURI m_target;
    std::int64_t m_failAfter;
    int m_openCount = 0;
};

// Puts a factory in front of the stream manager's others for its lifetime.
class ScopedStreamFactory
{
public:
    explicit ScopedStreamFactory(fenn::P<fenn::IStreamFactory> factory);
    ~ScopedStreamFactory();
    ScopedStreamFactory(const ScopedStreamFactory&) = delete;
    ScopedStreamFactory& operator=(const ScopedStreamFactory&) = delete;

private:
    fenn::P<fenn::IStreamFactory> m_factory;
};

}  // namespace tbtest

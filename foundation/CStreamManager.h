#pragma once

#include <mutex>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/IStreamFactory.h"

namespace fenn {

// The shared opener of streams: asks its factories in the order in which
// they were added, and the first stream it gets is the answer. Any thread
// may call it; one mutex is held for each whole walk, and it is recursive so
// that a factory may open what it wraps through the manager.
class CStreamManager : public CObject, public CStreamFactoryBase, public virtual IStreamManager
{
public:
    static P<CStreamManager> getInstance();

    void addFactory(P<IStreamFactory> factory) override;
    void removeFactory(const IStreamFactory* factory) override;

    P<IInStream> tryOpenInStream(const StreamURI& uri) override;
    P<IResetableInStream> tryOpenResetableInStream(const StreamURI& uri) override;
    P<ISeekableInStream> tryOpenSeekableInStream(const StreamURI& uri) override;
    P<IOutStream> tryOpenOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                   DeleteOnClose deleteOnClose) override;
    P<IResetableOutStream> tryOpenResetableOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                     DeleteOnClose deleteOnClose) override;
    P<ISeekableOutStream> tryOpenSeekableOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                   DeleteOnClose deleteOnClose) override;
    P<IIOStream> tryOpenIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                 DeleteOnClose deleteOnClose) override;
    P<IResetableIOStream> tryOpenResetableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                   DeleteOnClose deleteOnClose) override;
    P<ISeekableIOStream> tryOpenSeekableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                 DeleteOnClose deleteOnClose) override;

private:
    // The first non-null stream that open gives for a factory, in order.
    template <class Open> auto firstOpened(Open open);

    mutable std::recursive_mutex m_mutex;
    std::vector<P<IStreamFactory>> m_factories;
};

}  // namespace fenn

#include "foundation/CStreamManager.h"

#include <algorithm>
#include <type_traits>

#include "foundation/CObjectError.h"
#include "foundation/TSingleton.h"

namespace fenn {

void checkOpenArguments(const CObjectDescription& opener, const char* method, StreamShare share, StreamCreate create,
                        DeleteOnClose deleteOnClose)
{
    switch (share) {
    case StreamShare::exclusive:
    case StreamShare::read:
    case StreamShare::readWriteDelete:
        break;
    default:
        throw CInvalidArgError(opener, method, "share");
    }
    switch (create) {
    case StreamCreate::openExisting:
    case StreamCreate::createEmpty:
    case StreamCreate::openOrCreate:
        break;
    default:
        throw CInvalidArgError(opener, method, "create");
    }
    if (deleteOnClose != DeleteOnClose::no && deleteOnClose != DeleteOnClose::yes) {
        throw CInvalidArgError(opener, method, "deleteOnClose");
    }
}

P<CStreamManager> CStreamManager::getInstance()
{
    static TSingleton<CStreamManager> instance([] { return make<CStreamManager>(); });
    return instance.get();
}

void CStreamManager::addFactory(P<IStreamFactory> factory)
{
    if (!factory) throw CInvalidArgError(this, "addFactory", "factory");
    std::lock_guard lock(m_mutex);
    m_factories.push_back(std::move(factory));
}

void CStreamManager::removeFactory(const IStreamFactory* factory)
{
    std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_factories.begin(), m_factories.end(),
                                    [factory](const P<IStreamFactory>& entry) { return entry.get() == factory; });
    if (found != m_factories.end()) m_factories.erase(found);
}

template <class Open> auto CStreamManager::firstOpened(Open open)
{
    using Stream = std::invoke_result_t<Open, IStreamFactory&>;
    std::lock_guard lock(m_mutex);
    // A factory may add or remove factories while it opens; the walk goes
    // over the list as it was when the walk began.
    const std::vector<P<IStreamFactory>> factories = m_factories;
    for (const P<IStreamFactory>& factory : factories) {
        if (auto stream = open(*factory)) return stream;
    }
    return Stream();
}

P<IInStream> CStreamManager::tryOpenInStream(const StreamURI& uri)
{
    return firstOpened([&](IStreamFactory& factory) { return factory.tryOpenInStream(uri); });
}

P<IResetableInStream> CStreamManager::tryOpenResetableInStream(const StreamURI& uri)
{
    return firstOpened([&](IStreamFactory& factory) { return factory.tryOpenResetableInStream(uri); });
}

P<ISeekableInStream> CStreamManager::tryOpenSeekableInStream(const StreamURI& uri)
{
    return firstOpened([&](IStreamFactory& factory) { return factory.tryOpenSeekableInStream(uri); });
}

P<IOutStream> CStreamManager::tryOpenOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                               DeleteOnClose deleteOnClose)
{
    checkOpenArguments(this, "tryOpenOutStream", share, create, deleteOnClose);
    return firstOpened(
        [&](IStreamFactory& factory) { return factory.tryOpenOutStream(uri, share, create, deleteOnClose); });
}

P<IResetableOutStream> CStreamManager::tryOpenResetableOutStream(const StreamURI& uri, StreamShare share,
                                                                 StreamCreate create, DeleteOnClose deleteOnClose)
{
    checkOpenArguments(this, "tryOpenResetableOutStream", share, create, deleteOnClose);
    return firstOpened(
        [&](IStreamFactory& factory) { return factory.tryOpenResetableOutStream(uri, share, create, deleteOnClose); });
}

P<ISeekableOutStream> CStreamManager::tryOpenSeekableOutStream(const StreamURI& uri, StreamShare share,
                                                               StreamCreate create, DeleteOnClose deleteOnClose)
{
    checkOpenArguments(this, "tryOpenSeekableOutStream", share, create, deleteOnClose);
    return firstOpened(
        [&](IStreamFactory& factory) { return factory.tryOpenSeekableOutStream(uri, share, create, deleteOnClose); });
}

P<IIOStream> CStreamManager::tryOpenIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                             DeleteOnClose deleteOnClose)
{
    checkOpenArguments(this, "tryOpenIOStream", share, create, deleteOnClose);
    return firstOpened(
        [&](IStreamFactory& factory) { return factory.tryOpenIOStream(uri, share, create, deleteOnClose); });
}

P<IResetableIOStream> CStreamManager::tryOpenResetableIOStream(const StreamURI& uri, StreamShare share,
                                                               StreamCreate create, DeleteOnClose deleteOnClose)
{
    checkOpenArguments(this, "tryOpenResetableIOStream", share, create, deleteOnClose);
    return firstOpened(
        [&](IStreamFactory& factory) { return factory.tryOpenResetableIOStream(uri, share, create, deleteOnClose); });
}

P<ISeekableIOStream> CStreamManager::tryOpenSeekableIOStream(const StreamURI& uri, StreamShare share,
                                                             StreamCreate create, DeleteOnClose deleteOnClose)
{
    checkOpenArguments(this, "tryOpenSeekableIOStream", share, create, deleteOnClose);
    return firstOpened(
        [&](IStreamFactory& factory) { return factory.tryOpenSeekableIOStream(uri, share, create, deleteOnClose); });
}

}  // namespace fenn

#include "foundation/posix/CDiskStreamFactory.h"

#include <optional>
#include <string>

#include "foundation/CURIError.h"

namespace fenn::posix {

namespace {

// The POSIX path that uri names, or nothing for a scheme other than "file".
// A "file" URI that names no local file (a host, a query, a broken path)
// throws CURIFormatError from CURI::toPath.
std::optional<std::string> toFilePath(const StreamURI& uri)
{
    if (!uri.isRelative() && !uri.isScheme("file")) return std::nullopt;
    return uri.toPath().toStdString();
}

}  // namespace

P<CDiskInStream> CDiskStreamFactory::tryOpenIn(const StreamURI& uri)
{
    const std::optional<std::string> path = toFilePath(uri);
    if (!path) return nullptr;
    return CDiskInStream::tryOpen(*path, uri);
}

P<CDiskOutStream> CDiskStreamFactory::tryOpenOut(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                 DeleteOnClose deleteOnClose, const char* method)
{
    checkOpenArguments(this, method, share, create, deleteOnClose);
    const std::optional<std::string> path = toFilePath(uri);
    if (!path) return nullptr;
    return CDiskOutStream::tryOpen(*path, uri, share, create, deleteOnClose);
}

P<CDiskIOStream> CDiskStreamFactory::tryOpenIO(const StreamURI& uri, StreamShare share, StreamCreate create,
                                               DeleteOnClose deleteOnClose, const char* method)
{
    checkOpenArguments(this, method, share, create, deleteOnClose);
    const std::optional<std::string> path = toFilePath(uri);
    if (!path) return nullptr;
    return CDiskIOStream::tryOpen(*path, uri, share, create, deleteOnClose);
}

P<IInStream> CDiskStreamFactory::tryOpenInStream(const StreamURI& uri)
{
    return tryOpenIn(uri);
}

P<IResetableInStream> CDiskStreamFactory::tryOpenResetableInStream(const StreamURI& uri)
{
    return tryOpenIn(uri);
}

P<ISeekableInStream> CDiskStreamFactory::tryOpenSeekableInStream(const StreamURI& uri)
{
    return tryOpenIn(uri);
}

P<IOutStream> CDiskStreamFactory::tryOpenOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                   DeleteOnClose deleteOnClose)
{
    return tryOpenOut(uri, share, create, deleteOnClose, "tryOpenOutStream");
}

P<IResetableOutStream> CDiskStreamFactory::tryOpenResetableOutStream(const StreamURI& uri, StreamShare share,
                                                                     StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenOut(uri, share, create, deleteOnClose, "tryOpenResetableOutStream");
}

P<ISeekableOutStream> CDiskStreamFactory::tryOpenSeekableOutStream(const StreamURI& uri, StreamShare share,
                                                                   StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenOut(uri, share, create, deleteOnClose, "tryOpenSeekableOutStream");
}

P<IIOStream> CDiskStreamFactory::tryOpenIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                 DeleteOnClose deleteOnClose)
{
    return tryOpenIO(uri, share, create, deleteOnClose, "tryOpenIOStream");
}

P<IResetableIOStream> CDiskStreamFactory::tryOpenResetableIOStream(const StreamURI& uri, StreamShare share,
                                                                   StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenIO(uri, share, create, deleteOnClose, "tryOpenResetableIOStream");
}

P<ISeekableIOStream> CDiskStreamFactory::tryOpenSeekableIOStream(const StreamURI& uri, StreamShare share,
                                                                 StreamCreate create, DeleteOnClose deleteOnClose)
{
    return tryOpenIO(uri, share, create, deleteOnClose, "tryOpenSeekableIOStream");
}

}  // namespace fenn::posix

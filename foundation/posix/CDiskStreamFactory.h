#pragma once

#include "foundation/CObject.h"
#include "foundation/IStreamFactory.h"
#include "foundation/posix/CDiskStream.h"

namespace fenn::posix {

// Opens disk streams for "file:" URIs ("file:///home/a%20b/x.wav") and for
// URIs without a scheme, whose decoded path is a POSIX path (CURI::toPath).
// A "file:" URI with a host, a query or a fragment throws CURIFormatError.
// Other schemes and missing files give null from the try forms. Holds no
// state; any thread may call it.
class CDiskStreamFactory : public CObject, public CStreamFactoryBase
{
public:
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
    P<CDiskInStream> tryOpenIn(const StreamURI& uri);
    P<CDiskOutStream> tryOpenOut(const StreamURI& uri, StreamShare share, StreamCreate create,
                                 DeleteOnClose deleteOnClose, const char* method);
    P<CDiskIOStream> tryOpenIO(const StreamURI& uri, StreamShare share, StreamCreate create,
                               DeleteOnClose deleteOnClose, const char* method);
};

}  // namespace fenn::posix

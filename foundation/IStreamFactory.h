#pragma once

#include <cstdint>

#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/IStream.h"

namespace fenn {

// Who else may use a file while a stream has it open.
enum class StreamShare : std::int32_t {
    exclusive = 0,       // nobody: a second exclusive opener fails
    read = 1,            // others may read
    readWriteDelete = 2  // others may read, write and delete
};

// What to do when the file does or does not exist.
enum class StreamCreate : std::int32_t {
    openExisting = 1,  // the file must exist
    createEmpty = 2,   // always start with a new, empty file
    openOrCreate = 3   // open it, or create it if it does not exist
};

// Whether the file is removed when the stream closes.
enum class DeleteOnClose : std::int32_t { no = 0, yes = 1 };

// Throws CInvalidArgError, naming opener and method, when share, create or
// deleteOnClose holds a value outside its list.
void checkOpenArguments(const CObjectDescription& opener, const char* method, StreamShare share, StreamCreate create,
                        DeleteOnClose deleteOnClose);

// Opens streams for URIs. Each kind comes in two forms: the try form gives
// null when this factory cannot serve the URI (another scheme, or no such
// file); the plain form throws CFileNotFoundError for the URI instead.
// Input kinds open for reading, output kinds for writing, IO kinds for both.
class IStreamFactory : public virtual IBase
{
public:
    virtual P<IInStream> tryOpenInStream(const StreamURI& uri) = 0;
    virtual P<IInStream> openInStream(const StreamURI& uri) = 0;
    virtual P<IResetableInStream> tryOpenResetableInStream(const StreamURI& uri) = 0;
    virtual P<IResetableInStream> openResetableInStream(const StreamURI& uri) = 0;
    virtual P<ISeekableInStream> tryOpenSeekableInStream(const StreamURI& uri) = 0;
    virtual P<ISeekableInStream> openSeekableInStream(const StreamURI& uri) = 0;

    virtual P<IOutStream> tryOpenOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                           DeleteOnClose deleteOnClose) = 0;
    virtual P<IOutStream> openOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                        DeleteOnClose deleteOnClose) = 0;
    virtual P<IResetableOutStream> tryOpenResetableOutStream(const StreamURI& uri, StreamShare share,
                                                             StreamCreate create, DeleteOnClose deleteOnClose) = 0;
    virtual P<IResetableOutStream> openResetableOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                          DeleteOnClose deleteOnClose) = 0;
    virtual P<ISeekableOutStream> tryOpenSeekableOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                           DeleteOnClose deleteOnClose) = 0;
    virtual P<ISeekableOutStream> openSeekableOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                        DeleteOnClose deleteOnClose) = 0;

    virtual P<IIOStream> tryOpenIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                         DeleteOnClose deleteOnClose) = 0;
    virtual P<IIOStream> openIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                      DeleteOnClose deleteOnClose) = 0;
    virtual P<IResetableIOStream> tryOpenResetableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                           DeleteOnClose deleteOnClose) = 0;
    virtual P<IResetableIOStream> openResetableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                        DeleteOnClose deleteOnClose) = 0;
    virtual P<ISeekableIOStream> tryOpenSeekableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                         DeleteOnClose deleteOnClose) = 0;
    virtual P<ISeekableIOStream> openSeekableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                      DeleteOnClose deleteOnClose) = 0;
};

// A factory that asks an ordered list of factories.
class IStreamManager : public virtual IStreamFactory
{
public:
    // A factory added later is asked after those added before it.
    virtual void addFactory(P<IStreamFactory> factory) = 0;
    // Removes the factory by identity; an unknown factory is ignored.
    virtual void removeFactory(const IStreamFactory* factory) = 0;
};

// Gives a factory the plain forms, each its try form plus the
// CFileNotFoundError; the implementer writes only the try forms.
class CStreamFactoryBase : public virtual IStreamFactory
{
public:
    P<IInStream> openInStream(const StreamURI& uri) override { return found(tryOpenInStream(uri), uri); }
    P<IResetableInStream> openResetableInStream(const StreamURI& uri) override
    {
        return found(tryOpenResetableInStream(uri), uri);
    }
    P<ISeekableInStream> openSeekableInStream(const StreamURI& uri) override
    {
        return found(tryOpenSeekableInStream(uri), uri);
    }

    P<IOutStream> openOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                DeleteOnClose deleteOnClose) override
    {
        return found(tryOpenOutStream(uri, share, create, deleteOnClose), uri);
    }
    P<IResetableOutStream> openResetableOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                  DeleteOnClose deleteOnClose) override
    {
        return found(tryOpenResetableOutStream(uri, share, create, deleteOnClose), uri);
    }
    P<ISeekableOutStream> openSeekableOutStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                DeleteOnClose deleteOnClose) override
    {
        return found(tryOpenSeekableOutStream(uri, share, create, deleteOnClose), uri);
    }

    P<IIOStream> openIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                              DeleteOnClose deleteOnClose) override
    {
        return found(tryOpenIOStream(uri, share, create, deleteOnClose), uri);
    }
    P<IResetableIOStream> openResetableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                                DeleteOnClose deleteOnClose) override
    {
        return found(tryOpenResetableIOStream(uri, share, create, deleteOnClose), uri);
    }
    P<ISeekableIOStream> openSeekableIOStream(const StreamURI& uri, StreamShare share, StreamCreate create,
                                              DeleteOnClose deleteOnClose) override
    {
        return found(tryOpenSeekableIOStream(uri, share, create, deleteOnClose), uri);
    }

private:
    template <class Stream> static P<Stream> found(P<Stream> stream, const StreamURI& uri)
    {
        if (!stream) throw CFileNotFoundError(uri);
        return stream;
    }
};

}  // namespace fenn

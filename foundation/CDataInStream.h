#pragma once

#include "foundation/CObject.h"
#include "foundation/IStream.h"

namespace fenn {

// The typed reads of IDataInStream, built on the read of the class that
// mixes this in. Each number is one exact read, so a number is never split
// between two threads that share the stream; a string takes several.
class CDataInOperations : public virtual IDataInStream
{
public:
    std::int8_t readInt8() override;
    std::uint8_t readUInt8() override;
    std::int16_t readInt16() override;
    std::uint16_t readUInt16() override;
    std::int32_t readInt32() override;
    std::uint32_t readUInt32() override;
    std::int64_t readInt64() override;
    std::uint64_t readUInt64() override;
    float readFloat() override;
    double readDouble() override;
    bool readBool() override;
    // A negative length throws CStreamError. The bytes are read in pieces,
    // so a damaged length fails at the end of the stream instead of
    // allocating the whole claimed size up front.
    String readString() override;
};

// Gives any input stream the typed reads. The wrapper holds the stream as
// seen through each capability it has, null where it lacks one; a call that
// needs a missing capability throws CMethodNotImplementedError, and a cast of
// the wrapper to an interface of that capability gives null. Interfaces the
// wrapper does not implement itself are looked up on the wrapped stream.
// The wrapper adds no lock of its own: it is as thread safe as the stream.
class CDataInStream : public CObject, public CDataInOperations, public virtual ISeekableDataInStream
{
public:
    explicit CDataInStream(P<IInStream> stream);

    bool getCastDelegates(const std::type_info& type, IBase*& primary, const CCastDelegateList*& others) override;

    void close() override;
    bool isClosed() const override;
    StreamURI getURI() const override;
    P<IStreamBase> getDelegate() const override;

    void read(void* buffer, std::int32_t size) override;
    std::int32_t readSome(void* buffer, std::int32_t size) override;
    std::int64_t skip(std::int64_t count) override;
    bool isAtEnd() override;

    std::int64_t getPos() override;
    std::int64_t getSize() override;
    bool isSizeKnown() override;
    P<IStreamMarker> createMarker() override;
    void resetTo(const IStreamMarker& marker) override;

    void seek(std::int64_t pos) override;
    void seekRelative(std::int64_t delta) override;
    void seekToEnd() override;

private:
    IResetableInStream& resetable(const char* method);
    ISeekableInStream& seekable(const char* method);

    P<IInStream> m_in;
    P<IResetableInStream> m_resetable;
    P<ISeekableInStream> m_seekable;
    CCastDelegateList m_wrapped;
};

}  // namespace fenn

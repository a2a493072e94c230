#pragma once

#include "foundation/CObject.h"
#include "foundation/IStream.h"

namespace fenn {

// The typed writes of IDataOutStream, built on the write of the class that
// mixes this in. Each value is one write, so a value is never split between
// two threads that share the stream.
class CDataOutOperations : public virtual IDataOutStream
{
public:
    void writeInt8(std::int8_t value) override;
    void writeUInt8(std::uint8_t value) override;
    void writeInt16(std::int16_t value) override;
    void writeUInt16(std::uint16_t value) override;
    void writeInt32(std::int32_t value) override;
    void writeUInt32(std::uint32_t value) override;
    void writeInt64(std::int64_t value) override;
    void writeUInt64(std::uint64_t value) override;
    void writeFloat(float value) override;
    void writeDouble(double value) override;
    void writeBool(bool value) override;
    // The UTF-8 bytes of the string after their 32-bit count.
    void writeString(const String& value) override;
};

// Gives any output stream the typed writes. The wrapper holds the stream as
// seen through each capability it has, null where it lacks one; a call that
// needs a missing capability throws CMethodNotImplementedError, and a cast of
// the wrapper to an interface of that capability gives null. Interfaces the
// wrapper does not implement itself are looked up on the wrapped stream.
// The wrapper adds no lock of its own: it is as thread safe as the stream.
class CDataOutStream : public CObject, public CDataOutOperations, public virtual ISeekableDataOutStream
{
public:
    explicit CDataOutStream(P<IOutStream> stream);

    bool getCastDelegates(const std::type_info& type, IBase*& primary, const CCastDelegateList*& others) override;

    void close() override;
    bool isClosed() const override;
    StreamURI getURI() const override;
    P<IStreamBase> getDelegate() const override;

    void write(const void* buffer, std::int32_t size) override;
    void flush() override;

    std::int64_t getPos() override;
    std::int64_t getSize() override;
    bool isSizeKnown() override;
    P<IStreamMarker> createMarker() override;
    void resetTo(const IStreamMarker& marker) override;

    void seek(std::int64_t pos) override;
    void seekRelative(std::int64_t delta) override;
    void seekToEnd() override;

private:
    IResetableOutStream& resetable(const char* method);
    ISeekableOutStream& seekable(const char* method);

    P<IOutStream> m_out;
    P<IResetableOutStream> m_resetable;
    P<ISeekableOutStream> m_seekable;
    CCastDelegateList m_wrapped;
};

}  // namespace fenn

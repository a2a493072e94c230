#pragma once

#include <cstdint>

#include "foundation/CURI.h"
#include "foundation/IBase.h"
#include "foundation/P.h"
#include "foundation/String.h"

// The stream interfaces of the framework. A consumer asks for the least
// capable stream that serves it (forward only, resetable, seekable) and the
// opener hands out what it has. Every interface derives virtually, so a
// stream that offers several of them has one IStreamBase and one counter.
//
// Positions and sizes are signed 64-bit; the count of one read or write is
// a signed 32-bit. All failures are CStreamError and its children, carrying
// the stream's URI.

namespace fenn {

// How a stream names its place, and the text of that name as error
// messages quote it (the URI as it was written).
using StreamURI = CURI;
inline String uriText(const StreamURI& uri)
{
    return uri.getRawURI();
}

class IStreamMarker;

class IStreamBase : public virtual IBase
{
public:
    // Lets go of the system resource. Closing a closed stream does nothing;
    // every other operation on a closed stream throws CStreamClosedError.
    virtual void close() = 0;
    virtual bool isClosed() const = 0;
    virtual StreamURI getURI() const = 0;
    // The stream this one wraps, or null for a stream that stands alone.
    virtual P<IStreamBase> getDelegate() const = 0;
};

class IInStream : public virtual IStreamBase
{
public:
    // Reads exactly size bytes or throws CEndOfStreamError. A read of 0 bytes
    // always succeeds, also at the end.
    virtual void read(void* buffer, std::int32_t size) = 0;
    // Reads up to size bytes and returns how many arrived; 0 at the end.
    virtual std::int32_t readSome(void* buffer, std::int32_t size) = 0;
    // Moves forward by up to count bytes, never past the end; returns the
    // number of bytes actually passed.
    virtual std::int64_t skip(std::int64_t count) = 0;
    virtual bool isAtEnd() = 0;
};

class IOutStream : public virtual IStreamBase
{
public:
    // Writes all size bytes or throws.
    virtual void write(const void* buffer, std::int32_t size) = 0;
    virtual void flush() = 0;
};

class IIOStream : public virtual IInStream, public virtual IOutStream
{
};

// A stream that can return to places it has passed. A marker remembers a
// place for as long as its holder keeps it.
class IResetableStream : public virtual IStreamBase
{
public:
    virtual std::int64_t getPos() = 0;
    // The size in bytes, or -1 when isSizeKnown is false.
    virtual std::int64_t getSize() = 0;
    virtual bool isSizeKnown() = 0;
    virtual P<IStreamMarker> createMarker() = 0;
    // Returns to the marker's place. A marker of another stream throws
    // CInvalidArgError.
    virtual void resetTo(const IStreamMarker& marker) = 0;
};

// A resetable stream that can go to any position. A negative target throws
// CInvalidArgError; a target past the end is allowed.
class ISeekableStream : public virtual IResetableStream
{
public:
    virtual void seek(std::int64_t pos) = 0;
    virtual void seekRelative(std::int64_t delta) = 0;
    virtual void seekToEnd() = 0;
};

class IResetableInStream : public virtual IInStream, public virtual IResetableStream
{
};

class ISeekableInStream : public virtual IResetableInStream, public virtual ISeekableStream
{
};

class IResetableOutStream : public virtual IOutStream, public virtual IResetableStream
{
};

class ISeekableOutStream : public virtual IResetableOutStream, public virtual ISeekableStream
{
};

class IResetableIOStream : public virtual IIOStream,
                           public virtual IResetableInStream,
                           public virtual IResetableOutStream
{
};

class ISeekableIOStream : public virtual IResetableIOStream,
                          public virtual ISeekableInStream,
                          public virtual ISeekableOutStream
{
};

// Typed reads. Multi-byte values are little-endian at full width; a bool is
// one byte, non-zero meaning true; a string is a 32-bit byte count followed
// by that many UTF-8 bytes, without terminator.
class IDataInStream : public virtual IInStream
{
public:
    virtual std::int8_t readInt8() = 0;
    virtual std::uint8_t readUInt8() = 0;
    virtual std::int16_t readInt16() = 0;
    virtual std::uint16_t readUInt16() = 0;
    virtual std::int32_t readInt32() = 0;
    virtual std::uint32_t readUInt32() = 0;
    virtual std::int64_t readInt64() = 0;
    virtual std::uint64_t readUInt64() = 0;
    virtual float readFloat() = 0;
    virtual double readDouble() = 0;
    virtual bool readBool() = 0;
    virtual String readString() = 0;
};

class IResetableDataInStream : public virtual IDataInStream, public virtual IResetableInStream
{
};

class ISeekableDataInStream : public virtual IResetableDataInStream, public virtual ISeekableInStream
{
};

// Typed writes, in the form that IDataInStream reads.
class IDataOutStream : public virtual IOutStream
{
public:
    virtual void writeInt8(std::int8_t value) = 0;
    virtual void writeUInt8(std::uint8_t value) = 0;
    virtual void writeInt16(std::int16_t value) = 0;
    virtual void writeUInt16(std::uint16_t value) = 0;
    virtual void writeInt32(std::int32_t value) = 0;
    virtual void writeUInt32(std::uint32_t value) = 0;
    virtual void writeInt64(std::int64_t value) = 0;
    virtual void writeUInt64(std::uint64_t value) = 0;
    virtual void writeFloat(float value) = 0;
    virtual void writeDouble(double value) = 0;
    virtual void writeBool(bool value) = 0;
    virtual void writeString(const String& value) = 0;
};

class IResetableDataOutStream : public virtual IDataOutStream, public virtual IResetableOutStream
{
};

class ISeekableDataOutStream : public virtual IResetableDataOutStream, public virtual ISeekableOutStream
{
};

// A remembered place in a resetable stream. It stays usable as long as the
// caller holds it.
class IStreamMarker : public virtual IBase
{
public:
    virtual std::int64_t getPos() const = 0;
};

}  // namespace fenn

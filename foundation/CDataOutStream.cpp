#include "foundation/CDataOutStream.h"

#include <bit>
#include <limits>
#include <string>
#include <type_traits>

#include "foundation/CObjectError.h"
#include "foundation/TCast.h"

namespace fenn {

namespace {

// Writes one unsigned value in the stream's byte order: least significant
// byte first.
template <class Unsigned> void writeLittleEndian(IOutStream& stream, Unsigned value)
{
    std::uint8_t bytes[sizeof(Unsigned)];
    std::uint64_t rest = value;
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(rest & 0xFF);
        rest >>= 8;
    }
    stream.write(bytes, sizeof(Unsigned));
}

template <class Integer> void writeInteger(IOutStream& stream, Integer value)
{
    writeLittleEndian(stream, static_cast<std::make_unsigned_t<Integer>>(value));
}

}  // namespace

void CDataOutOperations::writeInt8(std::int8_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeUInt8(std::uint8_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeInt16(std::int16_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeUInt16(std::uint16_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeInt32(std::int32_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeUInt32(std::uint32_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeInt64(std::int64_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeUInt64(std::uint64_t value)
{
    writeInteger(*this, value);
}

void CDataOutOperations::writeFloat(float value)
{
    writeLittleEndian(*this, std::bit_cast<std::uint32_t>(value));
}

void CDataOutOperations::writeDouble(double value)
{
    writeLittleEndian(*this, std::bit_cast<std::uint64_t>(value));
}

void CDataOutOperations::writeBool(bool value)
{
    writeUInt8(value ? 1 : 0);
}

void CDataOutOperations::writeString(const String& value)
{
    // The count and the bytes go out in one write, like every other value.
    std::string record(4, '\0');
    record += value.toStdString();
    const std::size_t length = record.size() - 4;
    if (record.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw CInvalidArgError(this, "writeString", "value");
    }
    for (std::size_t i = 0; i < 4; ++i) record[i] = static_cast<char>((length >> (8 * i)) & 0xFF);
    write(record.data(), static_cast<std::int32_t>(record.size()));
}

CDataOutStream::CDataOutStream(P<IOutStream> stream)
    : m_out(std::move(stream)), m_resetable(TCast<IResetableOutStream>(m_out)),
      m_seekable(TCast<ISeekableOutStream>(m_out))
{
    if (!m_out) throw CInvalidArgError(typeid(CDataOutStream), "CDataOutStream", "stream");
    m_wrapped.object = m_out.get();
}

bool CDataOutStream::getCastDelegates(const std::type_info& type, IBase*&, const CCastDelegateList*& others)
{
    const bool needsSeekable =
        type == typeid(ISeekableStream) || type == typeid(ISeekableOutStream) || type == typeid(ISeekableDataOutStream);
    const bool needsResetable = needsSeekable || type == typeid(IResetableStream) ||
                                type == typeid(IResetableOutStream) || type == typeid(IResetableDataOutStream);
    if (needsSeekable && !m_seekable) return false;
    if (needsResetable && !m_resetable) return false;
    others = &m_wrapped;
    return true;
}

void CDataOutStream::close()
{
    m_out->close();
}

bool CDataOutStream::isClosed() const
{
    return m_out->isClosed();
}

StreamURI CDataOutStream::getURI() const
{
    return m_out->getURI();
}

P<IStreamBase> CDataOutStream::getDelegate() const
{
    return m_out;
}

void CDataOutStream::write(const void* buffer, std::int32_t size)
{
    m_out->write(buffer, size);
}

void CDataOutStream::flush()
{
    m_out->flush();
}

std::int64_t CDataOutStream::getPos()
{
    return resetable("getPos").getPos();
}

std::int64_t CDataOutStream::getSize()
{
    return resetable("getSize").getSize();
}

bool CDataOutStream::isSizeKnown()
{
    return resetable("isSizeKnown").isSizeKnown();
}

P<IStreamMarker> CDataOutStream::createMarker()
{
    return resetable("createMarker").createMarker();
}

void CDataOutStream::resetTo(const IStreamMarker& marker)
{
    resetable("resetTo").resetTo(marker);
}

void CDataOutStream::seek(std::int64_t pos)
{
    seekable("seek").seek(pos);
}

void CDataOutStream::seekRelative(std::int64_t delta)
{
    seekable("seekRelative").seekRelative(delta);
}

void CDataOutStream::seekToEnd()
{
    seekable("seekToEnd").seekToEnd();
}

IResetableOutStream& CDataOutStream::resetable(const char* method)
{
    if (!m_resetable) throw CMethodNotImplementedError(this, method);
    return *m_resetable;
}

ISeekableOutStream& CDataOutStream::seekable(const char* method)
{
    if (!m_seekable) throw CMethodNotImplementedError(this, method);
    return *m_seekable;
}

}  // namespace fenn

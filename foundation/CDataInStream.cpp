#include "foundation/CDataInStream.h"

#include <algorithm>
#include <bit>
#include <string>
#include <type_traits>

#include "foundation/CObjectError.h"
#include "foundation/CURIError.h"
#include "foundation/TCast.h"

namespace fenn {

namespace {

// Strings are read in pieces of this size, so that a damaged length costs at
// most one piece of memory more than the stream really holds.
constexpr std::int32_t kStringPieceSize = 64 * 1024;

// Reads one unsigned value of the stream's byte order: least significant
// byte first.
template <class Unsigned> Unsigned readLittleEndian(IInStream& stream)
{
    std::uint8_t bytes[sizeof(Unsigned)];
    stream.read(bytes, sizeof(Unsigned));
    std::uint64_t value = 0;
    for (std::size_t i = sizeof(Unsigned); i-- > 0;) value = (value << 8) | bytes[i];
    return static_cast<Unsigned>(value);
}

template <class Integer> Integer readInteger(IInStream& stream)
{
    return static_cast<Integer>(readLittleEndian<std::make_unsigned_t<Integer>>(stream));
}

}  // namespace

std::int8_t CDataInOperations::readInt8()
{
    return readInteger<std::int8_t>(*this);
}

std::uint8_t CDataInOperations::readUInt8()
{
    return readInteger<std::uint8_t>(*this);
}

std::int16_t CDataInOperations::readInt16()
{
    return readInteger<std::int16_t>(*this);
}

std::uint16_t CDataInOperations::readUInt16()
{
    return readInteger<std::uint16_t>(*this);
}

std::int32_t CDataInOperations::readInt32()
{
    return readInteger<std::int32_t>(*this);
}

std::uint32_t CDataInOperations::readUInt32()
{
    return readInteger<std::uint32_t>(*this);
}

std::int64_t CDataInOperations::readInt64()
{
    return readInteger<std::int64_t>(*this);
}

std::uint64_t CDataInOperations::readUInt64()
{
    return readInteger<std::uint64_t>(*this);
}

float CDataInOperations::readFloat()
{
    return std::bit_cast<float>(readLittleEndian<std::uint32_t>(*this));
}

double CDataInOperations::readDouble()
{
    return std::bit_cast<double>(readLittleEndian<std::uint64_t>(*this));
}

bool CDataInOperations::readBool()
{
    return readUInt8() != 0;
}

String CDataInOperations::readString()
{
    const std::int32_t length = readInt32();
    if (length < 0) {
        throw CStreamError(getURI(), "Invalid string length in data stream (uri: '%URI%').");
    }
    std::string bytes;
    while (bytes.size() < static_cast<std::size_t>(length)) {
        const std::size_t done = bytes.size();
        const std::int32_t piece = std::min(kStringPieceSize, length - static_cast<std::int32_t>(done));
        bytes.resize(done + static_cast<std::size_t>(piece));
        read(bytes.data() + done, piece);
    }
    return String::copyOf(bytes);
}

CDataInStream::CDataInStream(P<IInStream> stream)
    : m_in(std::move(stream)), m_resetable(TCast<IResetableInStream>(m_in)), m_seekable(TCast<ISeekableInStream>(m_in))
{
    if (!m_in) throw CInvalidArgError(typeid(CDataInStream), "CDataInStream", "stream");
    m_wrapped.object = m_in.get();
}

bool CDataInStream::getCastDelegates(const std::type_info& type, IBase*&, const CCastDelegateList*& others)
{
    const bool needsSeekable =
        type == typeid(ISeekableStream) || type == typeid(ISeekableInStream) || type == typeid(ISeekableDataInStream);
    const bool needsResetable = needsSeekable || type == typeid(IResetableStream) ||
                                type == typeid(IResetableInStream) || type == typeid(IResetableDataInStream);
    if (needsSeekable && !m_seekable) return false;
    if (needsResetable && !m_resetable) return false;
    others = &m_wrapped;
    return true;
}

void CDataInStream::close()
{
    m_in->close();
}

bool CDataInStream::isClosed() const
{
    return m_in->isClosed();
}

StreamURI CDataInStream::getURI() const
{
    return m_in->getURI();
}

P<IStreamBase> CDataInStream::getDelegate() const
{
    return m_in;
}

void CDataInStream::read(void* buffer, std::int32_t size)
{
    m_in->read(buffer, size);
}

std::int32_t CDataInStream::readSome(void* buffer, std::int32_t size)
{
    return m_in->readSome(buffer, size);
}

std::int64_t CDataInStream::skip(std::int64_t count)
{
    return m_in->skip(count);
}

bool CDataInStream::isAtEnd()
{
    return m_in->isAtEnd();
}

std::int64_t CDataInStream::getPos()
{
    return resetable("getPos").getPos();
}

std::int64_t CDataInStream::getSize()
{
    return resetable("getSize").getSize();
}

bool CDataInStream::isSizeKnown()
{
    return resetable("isSizeKnown").isSizeKnown();
}

P<IStreamMarker> CDataInStream::createMarker()
{
    return resetable("createMarker").createMarker();
}

void CDataInStream::resetTo(const IStreamMarker& marker)
{
    resetable("resetTo").resetTo(marker);
}

void CDataInStream::seek(std::int64_t pos)
{
    seekable("seek").seek(pos);
}

void CDataInStream::seekRelative(std::int64_t delta)
{
    seekable("seekRelative").seekRelative(delta);
}

void CDataInStream::seekToEnd()
{
    seekable("seekToEnd").seekToEnd();
}

IResetableInStream& CDataInStream::resetable(const char* method)
{
    if (!m_resetable) throw CMethodNotImplementedError(this, method);
    return *m_resetable;
}

ISeekableInStream& CDataInStream::seekable(const char* method)
{
    if (!m_seekable) throw CMethodNotImplementedError(this, method);
    return *m_seekable;
}

}  // namespace fenn

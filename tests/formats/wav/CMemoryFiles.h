#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <string>

#include "foundation/CMemoryIOStream.h"
#include "foundation/IStreamFactory.h"

namespace wavtest {

// Files held in memory, opened for reading as "mem:<name>": for tests and
// fuzz targets that open many small files, which the disk would only slow
// down. Register it with the stream manager for the time it is needed.
class CMemoryFiles : public fenn::CObject, public fenn::CStreamFactoryBase
{
public:
    void put(const std::string& name, const std::uint8_t* data, std::size_t size)
    {
        auto block = fenn::make<fenn::CMemoryBlock>();
        block->setSize(static_cast<std::int64_t>(size));
        if (size > 0) std::memcpy(block->getData(), data, size);
        m_files[name] = block;
    }

    fenn::P<fenn::IInStream> tryOpenInStream(const fenn::StreamURI& uri) override
    {
        return tryOpenSeekableInStream(uri);
    }
    fenn::P<fenn::IResetableInStream> tryOpenResetableInStream(const fenn::StreamURI& uri) override
    {
        return tryOpenSeekableInStream(uri);
    }
    fenn::P<fenn::ISeekableInStream> tryOpenSeekableInStream(const fenn::StreamURI& uri) override
    {
        if (!uri.isScheme("mem")) return nullptr;
        const auto found = m_files.find(uri.getSchemeSpecificPart().toStdString());
        if (found == m_files.end()) return nullptr;
        return fenn::make<fenn::CMemoryIOStream>(found->second, uri);
    }
    fenn::P<fenn::IOutStream> tryOpenOutStream(const fenn::StreamURI&, fenn::StreamShare, fenn::StreamCreate,
                                               fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::IResetableOutStream> tryOpenResetableOutStream(const fenn::StreamURI&, fenn::StreamShare,
                                                                 fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::ISeekableOutStream> tryOpenSeekableOutStream(const fenn::StreamURI&, fenn::StreamShare,
                                                               fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::IIOStream> tryOpenIOStream(const fenn::StreamURI&, fenn::StreamShare, fenn::StreamCreate,
                                             fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::IResetableIOStream> tryOpenResetableIOStream(const fenn::StreamURI&, fenn::StreamShare,
                                                               fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }
    fenn::P<fenn::ISeekableIOStream> tryOpenSeekableIOStream(const fenn::StreamURI&, fenn::StreamShare,
                                                             fenn::StreamCreate, fenn::DeleteOnClose) override
    {
        return nullptr;
    }

private:
    std::map<std::string, fenn::P<fenn::CMemoryBlock>> m_files;
};

}  // namespace wavtest

#pragma once

#include "foundation/CObject.h"
#include "foundation/CURI.h"
#include "foundation/IStream.h"

namespace fenn {

// Owns a file for as long as it lives, as a sign that one holder is at work
// (the program uses one to keep a single running instance). The file is
// opened through the shared stream manager for reading and writing,
// exclusively, emptied, and deleted when the stream closes. A second lock
// file on the same place fails in its constructor with the stream's error
// while the first one lives. Its destructor closes the stream, which
// deletes the file.
class CLockFile : public CObject
{
public:
    explicit CLockFile(const CURI& uri);
    ~CLockFile() override;
    CLockFile(const CLockFile&) = delete;
    CLockFile& operator=(const CLockFile&) = delete;

    const CURI& getURI() const { return m_uri; }
    const P<IIOStream>& getStream() const { return m_stream; }

private:
    CURI m_uri;
    P<IIOStream> m_stream;
};

}  // namespace fenn

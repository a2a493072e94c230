#pragma once

#include <mutex>

#include "foundation/CObject.h"
#include "foundation/ILog.h"
#include "foundation/IStream.h"

namespace fenn {

// A log on a text file: one line per message in the format of
// formatLogLine, UTF-8. The file is opened once, in the constructor, and
// begins empty at every start of the program; others may read it meanwhile.
// One mutex guards each line, so lines from different threads never mix.
class CTextFileLog : public CObject, public virtual ILog
{
public:
    enum class Flush { eachLine, whenBufferFull };

    // Opens (creates or empties) the file; throws the stream errors on failure.
    explicit CTextFileLog(const StreamURI& uri, Flush flush = Flush::eachLine);
    ~CTextFileLog() override;

    void setLevel(LogLevel level) override;
    LogLevel getLevel() const override;
    void log(LogLevel level, const String& category, const String& message, std::int64_t time = -1) override;
    StreamURI getURI() const { return m_uri; }

private:
    mutable std::mutex m_mutex;
    P<IOutStream> m_stream;
    StreamURI m_uri;
    LogLevel m_threshold = LogLevel::info;
    bool m_flushEachLine;
};

}  // namespace fenn

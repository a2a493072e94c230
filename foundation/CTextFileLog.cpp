#include "foundation/CTextFileLog.h"

#include "foundation/CStreamManager.h"
#include "foundation/IStreamFactory.h"

namespace fenn {

CTextFileLog::CTextFileLog(const StreamURI& uri, Flush flush)
    : m_stream(CStreamManager::getInstance()->openOutStream(uri, StreamShare::readWriteDelete,
                                                            StreamCreate::createEmpty, DeleteOnClose::no)),
      m_uri(uri),
      m_flushEachLine(flush == Flush::eachLine)
{
}

CTextFileLog::~CTextFileLog()
{
    if (m_stream && !m_stream->isClosed()) m_stream->close();
}

void CTextFileLog::setLevel(LogLevel level)
{
    std::lock_guard lock(m_mutex);
    m_threshold = level;
}

LogLevel CTextFileLog::getLevel() const
{
    std::lock_guard lock(m_mutex);
    return m_threshold;
}

void CTextFileLog::log(LogLevel level, const String& category, const String& message, std::int64_t time)
{
    std::lock_guard lock(m_mutex);
    if (level < m_threshold) return;
    // The line end of this platform is the line feed, so the line needs no
    // further translation.
    const std::string line = formatLogLine(level, category, message, time).toStdString() + "\n";
    m_stream->write(line.data(), static_cast<std::int32_t>(line.size()));
    if (m_flushEachLine) m_stream->flush();
}

}  // namespace fenn

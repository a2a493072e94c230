#pragma once

#include <mutex>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/ILog.h"
#include "foundation/TSimpleHashTable.h"

namespace fenn {

// The shared fan-out of log lines. A line below the threshold goes nowhere;
// others go to the logs of their category, then to the logs of all
// categories, newest first. One mutex guards the whole call, so lines from
// different threads never interleave; it is always taken before a log's own.
class CLogManager : public CObject, public virtual ILogManager
{
public:
    static P<CLogManager> getInstance();

    void setLevel(LogLevel level) override;
    LogLevel getLevel() const override;
    void log(LogLevel level, const String& category, const String& message, std::int64_t time = -1) override;
    void addLog(P<ILog> log, const String& category = String()) override;
    void removeLog(const ILog* log, const String& category = String()) override;

private:
    using LogList = std::vector<P<ILog>>;

    mutable std::recursive_mutex m_mutex;
    LogLevel m_threshold = LogLevel::debug;
    LogList m_allCategories;
    TSimpleHashTable<String, LogList> m_byCategory;
};

// A log on the standard error stream, in the line format of the text file log.
class CConsoleLog : public CObject, public virtual ILog
{
public:
    explicit CConsoleLog(LogLevel threshold = LogLevel::info) : m_threshold(threshold) {}
    void setLevel(LogLevel level) override;
    LogLevel getLevel() const override;
    void log(LogLevel level, const String& category, const String& message, std::int64_t time = -1) override;

private:
    mutable std::mutex m_mutex;
    LogLevel m_threshold;
};

}  // namespace fenn

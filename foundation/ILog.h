#pragma once

#include <cstdint>

#include "foundation/IBase.h"
#include "foundation/String.h"

namespace fenn {

enum class LogLevel : std::int32_t { debug = 0, info = 1, warning = 2, error = 3 };

// A log of text lines. time is milliseconds since 1970 (UTC); -1 means now.
class ILog : public virtual IBase
{
public:
    virtual void setLevel(LogLevel level) = 0;
    virtual LogLevel getLevel() const = 0;
    virtual void log(LogLevel level, const String& category, const String& message, std::int64_t time = -1) = 0;

    void debug(const String& category, const String& message) { log(LogLevel::debug, category, message); }
    void info(const String& category, const String& message) { log(LogLevel::info, category, message); }
    void warning(const String& category, const String& message) { log(LogLevel::warning, category, message); }
    void error(const String& category, const String& message) { log(LogLevel::error, category, message); }
};

// An ILog that passes lines on to other logs, for all categories or one.
class ILogManager : public virtual ILog
{
public:
    // An empty category means all categories.
    virtual void addLog(P<ILog> log, const String& category = String()) = 0;
    virtual void removeLog(const ILog* log, const String& category = String()) = 0;
};

// One log line without its line end: "hh:mm:ss [category] level: message",
// the message cut of trailing blanks and line feeds and every further line
// indented by four blanks.
String formatLogLine(LogLevel level, const String& category, const String& message, std::int64_t time);

// The current time in the unit of ILog::log.
std::int64_t getLogTime();

}  // namespace fenn

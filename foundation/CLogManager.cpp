#include "foundation/CLogManager.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include "foundation/TSingleton.h"

namespace fenn {

namespace {

const char* levelWord(LogLevel level)
{
    switch (level) {
    case LogLevel::debug:
        return " debug";
    case LogLevel::info:
        return "";
    case LogLevel::warning:
        return " Warning";
    case LogLevel::error:
        return " ERROR";
    }
    return " UnknownLogLevel";
}

void removeFrom(std::vector<P<ILog>>& logs, const ILog* log)
{
    std::erase_if(logs, [log](const P<ILog>& entry) { return entry.get() == log; });
}

}  // namespace

std::int64_t getLogTime()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

String formatLogLine(LogLevel level, const String& category, const String& message, std::int64_t time)
{
    if (time == -1) time = getLogTime();
    const std::time_t seconds = static_cast<std::time_t>(time / 1000);
    std::tm local{};
    localtime_r(&seconds, &local);
    char clock[16];
    std::snprintf(clock, sizeof clock, "%02d:%02d:%02d", local.tm_hour, local.tm_min, local.tm_sec);

    std::string line = clock;
    if (!category.isEmpty()) line.append(" [").append(category.view()).append("]");
    line.append(levelWord(level)).append(": ");
    std::string_view text = message.view();
    while (!text.empty() && (text.back() == ' ' || text.back() == '\n' || text.back() == '\t')) text.remove_suffix(1);
    for (char c : text) {
        if (c == '\n')
            line.append("\n    ");
        else
            line += c;
    }
    return String::copyOf(line);
}

P<CLogManager> CLogManager::getInstance()
{
    static TSingleton<CLogManager> instance([] { return make<CLogManager>(); });
    return instance.get();
}

void CLogManager::setLevel(LogLevel level)
{
    std::lock_guard lock(m_mutex);
    m_threshold = level;
}

LogLevel CLogManager::getLevel() const
{
    std::lock_guard lock(m_mutex);
    return m_threshold;
}

void CLogManager::log(LogLevel level, const String& category, const String& message, std::int64_t time)
{
    std::lock_guard lock(m_mutex);
    if (level < m_threshold) return;
    if (time == -1) time = getLogTime();
    if (!category.isEmpty()) {
        if (const LogList* logs = m_byCategory.find(category)) {
            for (auto it = logs->rbegin(); it != logs->rend(); ++it) (*it)->log(level, category, message, time);
        }
    }
    for (auto it = m_allCategories.rbegin(); it != m_allCategories.rend(); ++it)
        (*it)->log(level, category, message, time);
}

void CLogManager::addLog(P<ILog> log, const String& category)
{
    std::lock_guard lock(m_mutex);
    if (category.isEmpty()) {
        m_allCategories.push_back(std::move(log));
        return;
    }
    if (LogList* logs = m_byCategory.find(category))
        logs->push_back(std::move(log));
    else
        m_byCategory.put(category, LogList{std::move(log)});
}

void CLogManager::removeLog(const ILog* log, const String& category)
{
    std::lock_guard lock(m_mutex);
    if (category.isEmpty()) {
        removeFrom(m_allCategories, log);
    } else if (LogList* logs = m_byCategory.find(category)) {
        removeFrom(*logs, log);
    }
}

void CConsoleLog::setLevel(LogLevel level)
{
    std::lock_guard lock(m_mutex);
    m_threshold = level;
}

LogLevel CConsoleLog::getLevel() const
{
    std::lock_guard lock(m_mutex);
    return m_threshold;
}

void CConsoleLog::log(LogLevel level, const String& category, const String& message, std::int64_t time)
{
    std::lock_guard lock(m_mutex);
    if (level < m_threshold) return;
    const String line = formatLogLine(level, category, message, time);
    std::fprintf(stderr, "%s\n", line.c_str());
    std::fflush(stderr);
}

}  // namespace fenn

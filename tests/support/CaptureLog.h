#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "foundation/CObject.h"
#include "foundation/ILog.h"

namespace tbtest {

// A log that keeps its lines, for tests that check what was logged.
class CaptureLog : public fenn::CObject, public virtual fenn::ILog
{
public:
    void setLevel(fenn::LogLevel level) override { m_level = level; }
    fenn::LogLevel getLevel() const override { return m_level; }
    void log(fenn::LogLevel level, const fenn::String& category, const fenn::String& message,
             std::int64_t time = -1) override
    {
        if (level < m_level) return;
        std::lock_guard lock(m_mutex);
        m_lines.push_back(fenn::formatLogLine(level, category, message, time).toStdString());
    }

    std::vector<std::string> lines() const
    {
        std::lock_guard lock(m_mutex);
        return m_lines;
    }

private:
    fenn::LogLevel m_level = fenn::LogLevel::debug;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

}  // namespace tbtest

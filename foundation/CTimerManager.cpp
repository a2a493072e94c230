#include "foundation/CTimerManager.h"

#include <thread>

namespace fenn {

std::int64_t CTimer::getElapsedMilliseconds() const
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now() - m_start).count();
}

std::int64_t CTimer::getElapsedMicroseconds() const
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now() - m_start).count();
}

P<CTimerManager> CTimerManager::getInstance()
{
    // Built on first use by the language's thread-safe statics, not through
    // TSingleton, whose waiting sleeps through this object.
    static CTimerManager* const instance = new CTimerManager();
    return instance;
}

P<ITimer> CTimerManager::createTimer()
{
    return make<CTimer>();
}

std::int64_t CTimerManager::getCurrentTime() const
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void CTimerManager::sleep(std::int32_t milliseconds)
{
    if (milliseconds > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    else
        std::this_thread::yield();
}

}  // namespace fenn

#include "foundation/CSignalFactory.h"

#include <chrono>
#include <system_error>

#include "foundation/CError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/TSingleton.h"

namespace fenn {

void CSignalImpl::set()
{
    {
        std::lock_guard lock(m_mutex);
        m_set = true;
    }
    if (m_manual)
        m_changed.notify_all();
    else
        m_changed.notify_one();
}

void CSignalImpl::reset()
{
    std::lock_guard lock(m_mutex);
    m_set = false;
}

bool CSignalImpl::isSet() const
{
    std::lock_guard lock(m_mutex);
    return m_set;
}

bool CSignalImpl::consume()
{
    if (!m_set) return false;
    if (!m_manual) m_set = false;
    return true;
}

void CSignalImpl::wait()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_set; });
    consume();
}

bool CSignalImpl::waitFor(std::int32_t milliseconds)
{
    std::unique_lock lock(m_mutex);
    if (milliseconds > 0) {
        m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return m_set; });
    }
    return consume();
}

P<CSignalFactory> CSignalFactory::getInstance()
{
    static TSingleton<CSignalFactory> instance([] { return make<CSignalFactory>(); });
    return instance.get();
}

P<ISignal> CSignalFactory::createSignal(SignalReset reset, bool initiallySet)
{
    try {
        return make<CSignalImpl>(reset, initiallySet);
    } catch (const std::system_error& error) {
        throw CError(String(),
                     localize(texts::createEventError).replace("%ERRORDESC%", String::copyOf(error.code().message())));
    }
}

}  // namespace fenn

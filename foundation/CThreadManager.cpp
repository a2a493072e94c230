#include "foundation/CThreadManager.h"

#include <chrono>
#include <functional>
#include <system_error>

#include "foundation/CError.h"
#include "foundation/CObjectError.h"
#include "foundation/FoundationTexts.h"
#include "foundation/IStringLocalizer.h"
#include "foundation/TSingleton.h"

namespace fenn {

CThreadImpl::CThreadImpl(P<IAction> body) : m_state(make<CState>())
{
    if (!body) throw CInvalidArgError(this, "CThreadImpl", "body");
    try {
        m_thread = std::thread(&CThreadImpl::run, m_state, std::move(body));
    } catch (const std::system_error& error) {
        throw CError(
            String(),
            localize(texts::createThreadErrorDesc).replace("%ERRORDESC%", String::copyOf(error.code().message())));
    } catch (const std::exception&) {
        throw CError(String(), localize(texts::createThreadError));
    }
}

CThreadImpl::~CThreadImpl()
{
    if (!m_thread.joinable()) return;
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach();
    else
        m_thread.join();
}

void CThreadImpl::run(P<CState> state, P<IAction> body)
{
    // The thread's boundary: an error is cloned for the owner, who reports
    // it on its own thread.
    P<CException> error;
    try {
        body->execute();
    } catch (const CException& caught) {
        error = caught.clone();
    } catch (const std::exception& caught) {
        error = make<CError>(String(), String::copyOfCP(caught.what()));
    } catch (...) {
        error = make<CError>();
    }
    // The action goes first: its release may be what ends this thread's owner.
    body = nullptr;
    std::lock_guard lock(state->mutex);
    state->error = std::move(error);
    state->finished = true;
    state->finishedChanged.notify_all();
}

void CThreadImpl::join()
{
    if (m_thread.get_id() == std::this_thread::get_id())
        throw CInvalidObjectStateError(this, "a thread cannot wait for itself");
    if (m_thread.joinable()) m_thread.join();
}

bool CThreadImpl::waitFor(std::int32_t milliseconds)
{
    std::unique_lock lock(m_state->mutex);
    if (milliseconds <= 0) return m_state->finished;
    return m_state->finishedChanged.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                             [this] { return m_state->finished; });
}

bool CThreadImpl::isRunning() const
{
    std::lock_guard lock(m_state->mutex);
    return !m_state->finished;
}

P<CException> CThreadImpl::getError() const
{
    std::lock_guard lock(m_state->mutex);
    return m_state->error;
}

P<CThreadManager> CThreadManager::getInstance()
{
    static TSingleton<CThreadManager> instance([] { return make<CThreadManager>(); });
    return instance.get();
}

P<IThread> CThreadManager::createThread(P<IAction> body)
{
    return make<CThreadImpl>(std::move(body));
}

std::uint64_t CThreadManager::getCurrentThreadId() const
{
    return std::hash<std::thread::id>{}(std::this_thread::get_id());
}

}  // namespace fenn

#include "host/remote/web/webbridge.h"

#include <QTimer>

WebBridge::WebBridge(QObject *parent) : QObject(parent)
{
}

bool WebBridge::run(const std::shared_ptr<Call> &call, std::chrono::milliseconds limit)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_isClosed)
        return false;
    m_calls.push_back(call);
    if (!m_isScheduled) {
        m_isScheduled = true;
        // The only thing of Qt that another thread touches: a queued call is made for that.
        QMetaObject::invokeMethod(this, &WebBridge::runNext, Qt::QueuedConnection);
    }
    call->done.wait_for(lock, limit, [&] { return call->isDone || m_isClosed; });
    call->work = nullptr;
    return call->isDone;
}

void WebBridge::runNext()
{
    std::function<void()> work;
    const std::shared_ptr<Call> call = takeNext(work);
    if (call) {
        work();
        const std::lock_guard<std::mutex> lock(m_mutex);
        call->isDone = true;
        call->done.notify_all();
    }
    scheduleNext();
}

/// Null if no call waits.
std::shared_ptr<WebBridge::Call> WebBridge::takeNext(std::function<void()> &work)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    while (!m_calls.empty()) {
        std::shared_ptr<Call> call = m_calls.front();
        m_calls.pop_front();
        work.swap(call->work);
        if (work)
            return call;
    }
    return nullptr;
}

void WebBridge::scheduleNext()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isScheduled = !m_calls.empty();
    // A timer, not a queued call: all queued calls run before the event loop looks at the user's input.
    if (m_isScheduled)
        QTimer::singleShot(0, this, &WebBridge::runNext);
}

void WebBridge::close()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isClosed = true;
    for (const std::shared_ptr<Call> &call : m_calls) {
        call->work = nullptr;
        call->done.notify_all();
    }
    m_calls.clear();
}

#include "host/remote/web/webfeed.h"

#include <utility>

WebFeed::WebFeed(std::string epoch) : m_epoch(std::move(epoch))
{
}

void WebFeed::publish(WebState state)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const bool isSame = state.isSame(m_state);
        m_state = std::move(state);
        if (isSame)
            return;
        ++m_version;
        m_text.reset();
    }
    m_changed.notify_all();
}

WebFeed::TextPointer WebFeed::latest()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_text)
        m_text = std::make_shared<const Text>(Text {m_version, m_state.toJson(m_epoch, m_version)});
    return m_text;
}

WebFeed::TextPointer WebFeed::waitForNext(std::uint64_t seen, std::chrono::milliseconds limit)
{
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        const std::uint64_t wakes = m_wakes;
        m_changed.wait_for(lock, limit, [&] { return m_version > seen || m_isClosed || m_wakes != wakes; });
        if (m_version <= seen || m_isClosed)
            return nullptr;
    }
    return latest();
}

void WebFeed::wake()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_wakes;
    }
    m_changed.notify_all();
}

void WebFeed::close()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isClosed = true;
    }
    m_changed.notify_all();
}

bool WebFeed::isClosed()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isClosed;
}

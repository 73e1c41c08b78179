#pragma once

#include <QObject>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// Carries calls from other threads to the thread of this object, the GUI thread, and the answers back. The
/// calls run one at a time from the event loop, which handles the user's input between any two of them.
class WebBridge final : public QObject
{
    Q_OBJECT
public:
    explicit WebBridge(QObject *parent = nullptr);

    /// For other threads: waits for the answer of `work`, which runs in this object's thread and must hold
    /// all its values itself. Nothing if it was not answered within the limit or the bridge is closed; `work`
    /// has then either not begun and never will, or it runs to its end and its answer is dropped.
    template<typename Work>
    auto ask(Work work, std::chrono::milliseconds limit) -> std::optional<decltype(work())>;

    /// Ends all waits, also later ones. Calls that have not begun are dropped.
    void close();

private:
    struct Call
    {
        std::function<void()> work; // null once it has begun or was given up
        std::condition_variable done;
        bool isDone = false;
    };

    /// False if the work was not done within the limit.
    bool run(const std::shared_ptr<Call> &call, std::chrono::milliseconds limit);
    /// Runs the next call; in this object's thread.
    void runNext();
    std::shared_ptr<Call> takeNext(std::function<void()> &work);
    void scheduleNext();

    std::mutex m_mutex;
    std::deque<std::shared_ptr<Call>> m_calls;
    bool m_isScheduled = false; // runNext() will be called
    bool m_isClosed = false;
};

template<typename Work>
auto WebBridge::ask(Work work, std::chrono::milliseconds limit) -> std::optional<decltype(work())>
{
    // Shared: if the caller has gone, the call still writes its answer here.
    const auto answer = std::make_shared<std::optional<decltype(work())>>();
    const auto call = std::make_shared<Call>();
    call->work = [answer, work = std::move(work)] { *answer = work(); };
    if (!run(call, limit))
        return std::nullopt;
    return std::move(*answer);
}

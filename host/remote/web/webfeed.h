#pragma once

#include "host/remote/web/webstate.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

/// The latest state for the page. One thread publishes it, any number of threads read it or wait for the next
/// one. The text is made by the first reader, not by the publisher.
class WebFeed final
{
public:
    struct Text
    {
        std::uint64_t version = 0;
        std::string json; // one line
    };
    using TextPointer = std::shared_ptr<const Text>;

    /// `epoch` names this run of the program: versions of different epochs cannot be compared.
    explicit WebFeed(std::string epoch);
    WebFeed(const WebFeed &) = delete;
    WebFeed &operator=(const WebFeed &) = delete;

    /// Ignores a state that equals the latest one.
    void publish(WebState state);

    /// Never null.
    TextPointer latest();
    /// Waits until there is a later version than `seen`, but no longer than `limit`, close() or wake(). Null
    /// if there is none.
    TextPointer waitForNext(std::uint64_t seen, std::chrono::milliseconds limit);
    /// Ends all waits that are under way.
    void wake();
    /// Ends all waits, also later ones.
    void close();
    bool isClosed();

private:
    const std::string m_epoch;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    WebState m_state;
    std::uint64_t m_version = 1;
    std::uint64_t m_wakes = 0;
    TextPointer m_text; // null until somebody reads the latest state
    bool m_isClosed = false;
};

#pragma once

#include <functional>

class QSqlDatabase;

/// Ends statements of a connection early: SQLite calls its condition while a statement runs, and while one
/// waits for a lock. A statement that runs is interrupted, one that waits fails as busy. Otherwise a
/// statement waits for a lock for 5 s, as under the driver's default.
class StatementInterrupter final
{
public:
    /// True: the current statement ends. Called in the thread of the connection, every few milliseconds.
    using Condition = std::function<bool()>;

    explicit StatementInterrupter(Condition condition) : m_condition(std::move(condition)) { }
    StatementInterrupter(const StatementInterrupter &) = delete;
    StatementInterrupter &operator=(const StatementInterrupter &) = delete;

    /// Applies to an open connection, which must not outlive this object. Without a condition, or if Qt's
    /// driver uses another copy of SQLite than this library, the connection stays as it is.
    void install(const QSqlDatabase &database);

private:
    static int interruptRunning(void *self);
    static int waitForLock(void *self, int attempt);

    const Condition m_condition;
    int m_waitedMs = 0;
};

#pragma once

#include "host/result.h"

class HostConnection;

/// A write transaction: acquires the write lock in the constructor, rolls back in the destructor unless
/// commit() succeeded.
class HostTransaction final
{
    Q_DISABLE_COPY(HostTransaction)
public:
    explicit HostTransaction(HostConnection &connection);
    ~HostTransaction();

    bool isActive() const { return m_active; }
    [[nodiscard]] bool commit();
    /// Calls `write` in a transaction and commits if it returns true. On failure returns the connection's
    /// error.
    template<typename Write> static Result run(HostConnection &connection, Write write);

private:
    static Result resultOf(const HostConnection &connection, bool committed);

    HostConnection &m_connection;
    bool m_active = false;
};

template<typename Write> Result HostTransaction::run(HostConnection &connection, Write write)
{
    HostTransaction transaction(connection);
    return resultOf(connection, transaction.isActive() && write() && transaction.commit());
}

#include "host/database/hosttransaction.h"

#include "host/database/hostconnection.h"

HostTransaction::HostTransaction(HostConnection &connection)
    : m_connection(connection), m_active(connection.exec(QStringLiteral("BEGIN IMMEDIATE")))
{
}

HostTransaction::~HostTransaction()
{
    if (m_active)
        m_connection.rollback();
}

bool HostTransaction::commit()
{
    if (!m_active || !m_connection.exec(QStringLiteral("COMMIT")))
        return false;
    m_active = false;
    return true;
}

Result HostTransaction::resultOf(const HostConnection &connection, bool committed)
{
    if (committed)
        return Result::success();
    return connection.failedOnLock() ? Result::locked(connection.errorText())
                                     : Result::error(connection.errorText());
}

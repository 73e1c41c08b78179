#include "host/remote/remotestore.h"

#include <QStringList>

/// The linker drops a static library's resources unless they are referenced by name.
static void initResources()
{
    Q_INIT_RESOURCE(remote);
}

QJsonObject RemoteRecord::toJson() const
{
    QJsonObject json {{QStringLiteral("id"), id},
                      {QStringLiteral("carId"), carId},
                      {QStringLiteral("opId"), opId},
                      {QStringLiteral("opDoneDateTime"), doneTime},
                      {QStringLiteral("operatorName"), operatorName},
                      {QStringLiteral("serviceCode"), serviceCode},
                      {QStringLiteral("comment"), comment}};
    if (operatorId >= 0)
        json.insert(QStringLiteral("operatorId"), operatorId);
    if (localId >= 0)
        json.insert(QStringLiteral("localId"), localId);
    return json;
}

RemoteStore::RemoteStore(const QString &path) : m_connection(path)
{
}

Result RemoteStore::prepare(int usedRemoteId)
{
    initResources();
    const bool isReady = m_connection.isOpen() && m_connection.exec(QStringLiteral("PRAGMA journal_mode=WAL"))
        && m_connection.exec(QStringLiteral("PRAGMA synchronous=NORMAL"))
        && m_connection.exec(QStringLiteral("PRAGMA wal_autocheckpoint=0")) && addMissingColumns()
        && m_connection.execScript(QStringLiteral(":/host/remotetables.sql"));
    if (!isReady)
        return Result::error(m_connection.errorText());
    if (!m_keeper)
        m_keeper = std::make_unique<WalKeeper>(m_connection.path());
    // A new record with an id that the track's database knows would overwrite the older one.
    const int last =
        m_connection.value(QStringLiteral("SELECT seq FROM sqlite_sequence WHERE name='remote_records'"))
            .toInt();
    if (last >= usedRemoteId)
        return Result::success();
    return HostTransaction::run(m_connection, [&] {
        return m_connection.exec(QStringLiteral("DELETE FROM sqlite_sequence WHERE name='remote_records'"))
            && m_connection.exec(
                QStringLiteral("INSERT INTO sqlite_sequence (name,seq) VALUES ('remote_records',?)"),
                {usedRemoteId});
    });
}

/// Files of earlier versions lack columns.
bool RemoteStore::addMissingColumns()
{
    const QString columns = QStringLiteral("SELECT count(*) FROM pragma_table_info('remote_records')");
    const bool isOld = m_connection.value(columns).toInt() > 0
        && m_connection.value(columns + QLatin1String(" WHERE name='request_key'")).toInt() == 0;
    return !isOld
        || m_connection.exec(QStringLiteral("ALTER TABLE remote_records ADD COLUMN request_key TEXT"));
}

int RemoteStore::add(const RemoteRecord &record)
{
    const QVariant key = record.requestKey.isEmpty() ? QVariant() : QVariant(record.requestKey);
    const bool added = m_connection.exec(
        QStringLiteral("INSERT INTO remote_records (car_id,op_id,op_name,done_time,operator_id,operator_name,"
                       "service_code,comment,local_id,state,request_key) VALUES (?,?,?,?,?,?,?,?,?,?,?)"),
        {record.carId, record.opId, record.opName, record.doneTime, record.operatorId, record.operatorName,
         record.serviceCode, record.comment, record.localId, record.state, key});
    if (m_keeper)
        m_keeper->touch();
    return added ? m_connection.lastInsertId() : -1;
}

Result RemoteStore::setState(const QVector<int> &ids, RemoteRecord::State state)
{
    QStringList texts;
    for (const int id : ids)
        texts.append(QString::number(id));
    const QString statement = QStringLiteral("UPDATE remote_records SET state=? WHERE id IN (%1)")
                                  .arg(texts.join(QLatin1Char(',')));
    return transact([&] { return m_connection.exec(statement, {state}); });
}

Result RemoteStore::markDeleted(int remoteId, int localId)
{
    const auto markRemote = [&] {
        return remoteId < 0
            || m_connection.exec(QStringLiteral("UPDATE remote_records SET state=? WHERE id=?"),
                                 {RemoteRecord::Deleted, remoteId});
    };
    const auto markLocal = [&] {
        // A record already sent finds no local record to close: the module stores it as a new one, to which
        // this deletion does not apply.
        return localId < 0
            || (m_connection.exec(
                    QStringLiteral("UPDATE remote_records SET local_id=-1 WHERE local_id=? AND state=?"),
                    {localId, RemoteRecord::Sent})
                && m_connection.exec(QStringLiteral("UPDATE remote_records SET state=? WHERE local_id=?"),
                                     {RemoteRecord::Deleted, localId}));
    };
    return transact([&] { return markRemote() && markLocal(); });
}

QVector<RemoteRecord> RemoteStore::latest(int limit)
{
    return read(QStringLiteral("ORDER BY id DESC LIMIT ?"), {limit});
}

QVector<RemoteRecord> RemoteStore::inState(RemoteRecord::State state, int limit)
{
    return read(QStringLiteral("WHERE state=? ORDER BY id LIMIT ?"), {state, limit});
}

QVector<RemoteRecord> RemoteStore::doneSince(const QString &time, int limit)
{
    return read(QStringLiteral("WHERE done_time>=? ORDER BY done_time DESC,id DESC LIMIT ?"), {time, limit});
}

std::optional<RemoteRecord> RemoteStore::withKey(const QString &requestKey)
{
    const QVector<RemoteRecord> found = read(QStringLiteral("WHERE request_key=?"), {requestKey});
    return found.isEmpty() ? std::nullopt : std::make_optional(found.first());
}

bool RemoteStore::isTaken(int localId)
{
    return m_connection
        .value(QStringLiteral(
                   "SELECT EXISTS (SELECT 1 FROM remote_records WHERE local_id=? AND state IN (?,?))"),
               {localId, RemoteRecord::Waiting, RemoteRecord::Sent})
        .toBool();
}

int RemoteStore::count(RemoteRecord::State state)
{
    return m_connection.value(QStringLiteral("SELECT count(*) FROM remote_records WHERE state=?"), {state})
        .toInt();
}

QVector<RemoteRecord> RemoteStore::read(const QString &condition, const QVariantList &values)
{
    QVector<RemoteRecord> records;
    QSqlQuery query = m_connection.query(
        QLatin1String(
            "SELECT id,car_id,op_id,op_name,done_time,operator_id,operator_name,service_code,comment,"
            "local_id,state,request_key FROM remote_records ")
            + condition,
        values);
    while (query.next()) {
        RemoteRecord record;
        record.id = query.value(0).toInt();
        record.carId = query.value(1).toInt();
        record.opId = query.value(2).toInt();
        record.opName = query.value(3).toString();
        record.doneTime = query.value(4).toString();
        record.operatorId = query.value(5).toInt();
        record.operatorName = query.value(6).toString();
        record.serviceCode = query.value(7).toString();
        record.comment = query.value(8).toString();
        record.localId = query.value(9).toInt();
        record.state = RemoteRecord::State(query.value(10).toInt());
        record.requestKey = query.value(11).toString();
        records.append(record);
    }
    return records;
}

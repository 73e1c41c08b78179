#include "bench/plainsqlite.h"

#include <QtGlobal>

const char *const reloadStatements[5] = {
    "SELECT id,num,name FROM cars",
    "select m.*,sum(sum_sectors)/1000 as tt ,count(lap_id) as lc,count(distinct run_id) as rc from "
    "(select car_id,operation_id,max(operation_time) as ot,operation_state,comment,id from maintainance "
    "group by car_id,operation_id) m left outer join laps on (laps.car_id=m.car_id and "
    "laps.lap_timestamp>m.ot and laps.sum_sectors>0) group by m.car_id,m.operation_id",
    "select maintainance.car_id,maintainance.operation_id,maintainance.remote_id,maintainance.id,num,"
    "cars.name as model,operation_time,operation_name,"
    "ifnull(p.last_name||' '||p.first_name||' '||p.mid_name,maintainance.person_name) as pname, "
    "comment,operation_state from maintainance left join cars on cars.id=maintainance.car_id "
    "left join service_operations on service_operations.id=maintainance.operation_id "
    "left join personal p on p.id=maintainance.person_id order by operation_time desc",
    "SELECT * FROM service_reglament left join service_operations on "
    "service_reglament.operation_id=service_operations.id",
    "SELECT * FROM service_operations"};

PlainSqlite::PlainSqlite(const QByteArray &path)
{
    sqlite3 *database = nullptr;
    if (sqlite3_open(path.constData(), &database) != SQLITE_OK)
        qFatal("Cannot open %s", path.constData());
    m_database.reset(database);
}

void PlainSqlite::exec(const char *statement)
{
    if (sqlite3_exec(m_database.get(), statement, nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", statement, sqlite3_errmsg(m_database.get()));
}

PlainSqlite::Statement PlainSqlite::prepare(const char *statement)
{
    sqlite3_stmt *prepared = nullptr;
    if (sqlite3_prepare_v2(m_database.get(), statement, -1, &prepared, nullptr) != SQLITE_OK)
        qFatal("%s: %s", statement, sqlite3_errmsg(m_database.get()));
    return Statement(prepared);
}

qint64 PlainSqlite::readAll(const char *statement)
{
    const Statement prepared = prepare(statement);
    sqlite3_stmt *row = prepared.get();
    const int columns = sqlite3_column_count(row);
    qint64 checksum = 0;
    while (sqlite3_step(row) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            if (sqlite3_column_type(row, column) == SQLITE_INTEGER)
                checksum += sqlite3_column_int64(row, column);
            else if (const unsigned char *text = sqlite3_column_text(row, column))
                checksum += *text + sqlite3_column_bytes(row, column);
        }
    }
    return checksum;
}

int PlainSqlite::write(sqlite3_stmt *statement)
{
    if (sqlite3_step(statement) != SQLITE_DONE)
        qFatal("%s", sqlite3_errmsg(m_database.get()));
    sqlite3_reset(statement);
    return sqlite3_changes(m_database.get());
}

#include "host/fleet/personstore.h"

#include "host/database/hostconnection.h"
#include "host/database/hosttransaction.h"

#include <QJsonArray>

namespace {

QJsonObject toJson(const HostPerson &person)
{
    return {{QStringLiteral("id"), person.id},
            {QStringLiteral("lastName"), person.lastName},
            {QStringLiteral("firstName"), person.firstName},
            {QStringLiteral("midName"), person.midName},
            {QStringLiteral("serviceCode"), person.serviceCode}};
}

} // namespace

PersonStore::PersonStore(HostConnection &connection) : m_connection(connection)
{
    refresh();
}

void PersonStore::refresh()
{
    QVector<HostPerson> stored;
    QSqlQuery query = m_connection.query(
        QStringLiteral("SELECT id,last_name,first_name,mid_name,ifnull(service_code,'') FROM personal "
                       "LEFT JOIN host_personal ON person_id=id ORDER BY last_name,first_name,id"));
    if (!query.isActive())
        return;
    while (query.next())
        stored.append({query.value(0).toInt(), query.value(1).toString(), query.value(2).toString(),
                       query.value(3).toString(), query.value(4).toString()});
    m_people = stored;
}

QJsonObject PersonStore::message() const
{
    QJsonArray people;
    for (const HostPerson &person : m_people)
        people.append(toJson(person));
    return {{QStringLiteral("personalList"), people}};
}

Result PersonStore::store(const HostPerson &person)
{
    return HostTransaction::run(m_connection, [&] {
        const int id = storeName(person);
        return id >= 0
            && m_connection.exec(
                QStringLiteral("REPLACE INTO host_personal (person_id,service_code) VALUES (?,?)"),
                {id, person.serviceCode});
    });
}

int PersonStore::storeName(const HostPerson &person)
{
    const QVariantList names {person.lastName, person.firstName, person.midName};
    if (person.id < 0) {
        const auto insert =
            QStringLiteral("INSERT INTO personal (last_name,first_name,mid_name) VALUES (?,?,?)");
        return m_connection.exec(insert, names) ? m_connection.lastInsertId() : -1;
    }
    const auto update = QStringLiteral("UPDATE personal SET last_name=?,first_name=?,mid_name=? WHERE id=?");
    return m_connection.exec(update, names + QVariantList {person.id}) ? person.id : -1;
}

Result PersonStore::remove(int id)
{
    return HostTransaction::run(m_connection, [&] {
        return m_connection.exec(QStringLiteral("DELETE FROM personal WHERE id=?"), {id})
            && m_connection.exec(QStringLiteral("DELETE FROM host_personal WHERE person_id=?"), {id});
    });
}

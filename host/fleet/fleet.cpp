#include "host/fleet/fleet.h"

#include "host/database/hostconnection.h"

#include <QUuid>

namespace {

QJsonObject toJson(const FleetCar &car)
{
    return {{QStringLiteral("id"), car.id},
            {QStringLiteral("num"), car.number},
            {QStringLiteral("name"), car.model},
            {QStringLiteral("car_guid"), car.guid},
            {QStringLiteral("available_for_runs"), car.available}};
}

QJsonObject toJson(const FleetPerson &person)
{
    return {{QStringLiteral("id"), person.id},
            {QStringLiteral("lastName"), person.lastName},
            {QStringLiteral("firstName"), person.firstName},
            {QStringLiteral("midName"), person.midName},
            {QStringLiteral("serviceCode"), person.serviceCode}};
}

template<typename Record> QJsonArray toJsonArray(const QVector<Record> &records)
{
    QJsonArray array;
    for (const Record &record : records)
        array.append(toJson(record));
    return array;
}

} // namespace

Fleet::Fleet(HostConnection &connection) : m_connection(connection)
{
    refreshCars();
    refreshPeople();
}

QString Fleet::errorText() const
{
    return m_connection.errorText();
}

void Fleet::refreshCars()
{
    QVector<FleetCar> stored;
    QSqlQuery query =
        m_connection.query(QStringLiteral("SELECT id,num,name,ifnull(guid,''),ifnull(available,1) FROM cars "
                                          "LEFT JOIN host_cars ON car_id=id ORDER BY id"));
    if (!query.isActive())
        return;
    while (query.next())
        stored.append({query.value(0).toInt(), query.value(1).toString(), query.value(2).toString(),
                       query.value(3).toString(), query.value(4).toInt() != 0});
    m_cars = stored;
}

void Fleet::refreshPeople()
{
    QVector<FleetPerson> stored;
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

QJsonObject Fleet::carsMessage() const
{
    return {{QStringLiteral("cars"), toJsonArray(m_cars)}};
}

QJsonObject Fleet::peopleMessage() const
{
    return {{QStringLiteral("personalList"), toJsonArray(m_people)}};
}

bool Fleet::applyUpdate(const QJsonObject &updateCars)
{
    if (updateCars.value(QLatin1String("command")).toString() != QLatin1String("set_availability"))
        return false;
    QVector<int> ids;
    for (const QJsonValue id : updateCars.value(QLatin1String("carsIdsList")).toArray())
        ids.append(id.toInt(-1));
    return setAvailable(ids, updateCars.value(QLatin1String("available")).toInt() != 0);
}

bool Fleet::setAvailable(const QVector<int> &carIds, bool available)
{
    HostTransaction transaction(m_connection);
    for (const int id : carIds) {
        if (!transaction.isActive()
            || !m_connection.exec(
                QStringLiteral("INSERT INTO host_cars (car_id,available) SELECT id,? FROM cars WHERE id=? "
                               "ON CONFLICT (car_id) DO UPDATE SET available=excluded.available"),
                {available ? 1 : 0, id}))
            return false;
    }
    return transaction.commit();
}

bool Fleet::store(const FleetCar &car)
{
    HostTransaction transaction(m_connection);
    if (!transaction.isActive())
        return false;
    if (car.id < 0) {
        const bool added = m_connection.exec(QStringLiteral("INSERT INTO cars (num,name) VALUES (?,?)"),
                                             {car.number, car.model})
            && m_connection.exec(
                QStringLiteral("INSERT OR REPLACE INTO host_cars (car_id,guid,available) VALUES (?,?,?)"),
                {m_connection.lastInsertId(), QUuid::createUuid().toString(QUuid::WithoutBraces),
                 car.available ? 1 : 0});
        return added && transaction.commit();
    }
    return m_connection.exec(QStringLiteral("UPDATE cars SET num=?,name=? WHERE id=?"),
                             {car.number, car.model, car.id})
        && m_connection.exec(
            QStringLiteral("INSERT INTO host_cars (car_id,available) VALUES (?,?) "
                           "ON CONFLICT (car_id) DO UPDATE SET available=excluded.available"),
            {car.id, car.available ? 1 : 0})
        && transaction.commit();
}

bool Fleet::removeCar(int id)
{
    HostTransaction transaction(m_connection);
    if (!transaction.isActive())
        return false;
    return m_connection.exec(QStringLiteral("DELETE FROM cars WHERE id=?"), {id})
        && m_connection.exec(QStringLiteral("DELETE FROM host_cars WHERE car_id=?"), {id})
        && transaction.commit();
}

bool Fleet::store(const FleetPerson &person)
{
    HostTransaction transaction(m_connection);
    if (!transaction.isActive())
        return false;
    int id = person.id;
    if (id < 0) {
        if (!m_connection.exec(
                QStringLiteral("INSERT INTO personal (last_name,first_name,mid_name) VALUES (?,?,?)"),
                {person.lastName, person.firstName, person.midName}))
            return false;
        id = m_connection.lastInsertId();
    } else if (!m_connection.exec(
                   QStringLiteral("UPDATE personal SET last_name=?,first_name=?,mid_name=? WHERE id=?"),
                   {person.lastName, person.firstName, person.midName, id})) {
        return false;
    }
    return m_connection.exec(
               QStringLiteral("REPLACE INTO host_personal (person_id,service_code) VALUES (?,?)"),
               {id, person.serviceCode})
        && transaction.commit();
}

bool Fleet::removePerson(int id)
{
    HostTransaction transaction(m_connection);
    if (!transaction.isActive())
        return false;
    return m_connection.exec(QStringLiteral("DELETE FROM personal WHERE id=?"), {id})
        && m_connection.exec(QStringLiteral("DELETE FROM host_personal WHERE person_id=?"), {id})
        && transaction.commit();
}

#include "host/fleet/carstore.h"

#include "host/database/hostconnection.h"
#include "host/database/hosttransaction.h"

#include <QJsonArray>
#include <QUuid>

#include <algorithm>

namespace {

QJsonObject toJson(const HostCar &car)
{
    return {{QStringLiteral("id"), car.id},
            {QStringLiteral("num"), car.number},
            {QStringLiteral("name"), car.model},
            {QStringLiteral("car_guid"), car.guid},
            {QStringLiteral("available_for_runs"), car.available}};
}

} // namespace

CarStore::CarStore(HostConnection &connection) : m_connection(connection)
{
    refresh();
}

void CarStore::refresh()
{
    QVector<HostCar> stored;
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

QJsonObject CarStore::message() const
{
    QJsonArray cars;
    for (const HostCar &car : m_cars)
        cars.append(toJson(car));
    return {{QStringLiteral("cars"), cars}};
}

Result CarStore::applyUpdate(const QJsonObject &updateCars)
{
    const QString command = updateCars.value(QLatin1String("command")).toString();
    if (command != QLatin1String("set_availability"))
        return Result::error(tr("unknown command: %1").arg(command));
    QVector<int> ids;
    for (const QJsonValue id : updateCars.value(QLatin1String("carsIdsList")).toArray())
        ids.append(id.toInt(-1));
    return setAvailable(ids, updateCars.value(QLatin1String("available")).toInt() != 0);
}

Result CarStore::setAvailable(const QVector<int> &carIds, bool available)
{
    return HostTransaction::run(m_connection, [&] {
        return std::all_of(carIds.begin(), carIds.end(), [&](int id) {
            return m_connection.exec(
                QStringLiteral("INSERT INTO host_cars (car_id,available) SELECT id,? FROM cars WHERE id=? "
                               "ON CONFLICT (car_id) DO UPDATE SET available=excluded.available"),
                {available ? 1 : 0, id});
        });
    });
}

Result CarStore::add(const QString &model)
{
    return HostTransaction::run(m_connection, [&] { return insert(model); });
}

bool CarStore::insert(const QString &model)
{
    return m_connection.exec(QStringLiteral("INSERT INTO cars (num,name) SELECT "
                                            "ifnull(max(CAST(num AS INTEGER)),0)+1,? FROM cars "
                                            "WHERE num NOT GLOB '*[^0-9]*' AND length(num)<=9"),
                             {model})
        && m_connection.exec(
            QStringLiteral("INSERT OR REPLACE INTO host_cars (car_id,guid,available) VALUES (?,?,1)"),
            {m_connection.lastInsertId(), QUuid::createUuid().toString(QUuid::WithoutBraces)});
}

Result CarStore::store(const HostCar &car)
{
    if (car.number.isEmpty() || car.model.isEmpty())
        return Result::error(tr("a kart needs a number and a model"));
    // Read from the list: only this host writes the table.
    for (const HostCar &other : qAsConst(m_cars)) {
        if (other.id != car.id && other.number == car.number)
            return Result::error(tr("number %1 is another kart's").arg(car.number));
    }
    return HostTransaction::run(m_connection, [&] { return change(car); });
}

bool CarStore::change(const HostCar &car)
{
    return m_connection.exec(QStringLiteral("UPDATE cars SET num=?,name=? WHERE id=?"),
                             {car.number, car.model, car.id})
        && m_connection.exec(
            QStringLiteral("INSERT INTO host_cars (car_id,available) VALUES (?,?) "
                           "ON CONFLICT (car_id) DO UPDATE SET available=excluded.available"),
            {car.id, car.available ? 1 : 0});
}

Result CarStore::remove(int id)
{
    return HostTransaction::run(m_connection, [&] {
        return m_connection.exec(QStringLiteral("DELETE FROM cars WHERE id=?"), {id})
            && m_connection.exec(QStringLiteral("DELETE FROM host_cars WHERE car_id=?"), {id});
    });
}

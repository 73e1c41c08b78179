#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

class HostConnection;

struct FleetCar
{
    int id = -1;
    QString number;
    QString model;
    QString guid;
    bool available = true;
};

struct FleetPerson
{
    int id = -1;
    QString lastName;
    QString firstName;
    QString midName;
    QString serviceCode;
};

/// The host's cars and people: read, changed, and put into the messages that announce them. While the file
/// cannot be read the last known ones stay.
class Fleet final
{
public:
    explicit Fleet(HostConnection &connection);

    const QVector<FleetCar> &cars() const { return m_cars; }
    const QVector<FleetPerson> &people() const { return m_people; }
    /// Reads the cars anew, which a change alone does not.
    void refreshCars();
    void refreshPeople();
    /// Why the last change failed.
    QString errorText() const;

    /// Data of "cars_list_changed".
    QJsonObject carsMessage() const;
    /// Data of "personal_list".
    QJsonObject peopleMessage() const;

    /// Applies the data of "update_cars". False on an unknown command or a failed write.
    bool applyUpdate(const QJsonObject &updateCars);
    bool setAvailable(const QVector<int> &carIds, bool available);

    /// Adds the car if it has no id yet, else changes number, model and availability.
    bool store(const FleetCar &car);
    bool removeCar(int id);
    bool store(const FleetPerson &person);
    bool removePerson(int id);

private:
    HostConnection &m_connection;
    QVector<FleetCar> m_cars;
    QVector<FleetPerson> m_people;
};

#pragma once

#include "host/result.h"

#include <QJsonObject>
#include <QVector>

class HostConnection;

struct HostPerson
{
    int id = -1;
    QString lastName;
    QString firstName;
    QString midName;
    QString serviceCode;
};

/// Reads and writes the host's people. Keeps the people of the last successful refresh().
class PersonStore final
{
public:
    explicit PersonStore(HostConnection &connection);

    const QVector<HostPerson> &list() const { return m_people; }
    /// Reads the people. The functions below write only: call it after them.
    void refresh();

    /// Data of "personal_list".
    QJsonObject message() const;

    /// Adds the person if the id is negative, else changes name and service code.
    Result store(const HostPerson &person);
    Result remove(int id);

private:
    /// The person's id, also of one added; negative on failure.
    int storeName(const HostPerson &person);

    HostConnection &m_connection;
    QVector<HostPerson> m_people;
};

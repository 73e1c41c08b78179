#pragma once

#include "support/testdatabase.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QVariant>

/// Fills tables with random rows, among them invalid ones.
class RandomData
{
public:
    explicit RandomData(quint32 seed) : m_random(seed) { }

    void fill(const TestDatabase &database)
    {
        const int cars = below(8);
        for (int i = 0; i < cars; ++i) {
            database.exec("INSERT INTO cars VALUES (?,?,?)",
                          {i, oneOf({QString::number(below(30)), "A5", QVariant()}), model()});
        }
        for (int id = 1; id <= 4; ++id)
            database.exec("INSERT INTO service_operations VALUES (?,?)",
                          {id, oneOf({QString("Операция %1").arg(id), "%s %1", QVariant()})});
        for (int i = below(14); i > 0; --i)
            database.exec("REPLACE INTO service_reglament VALUES (?,?,?,?,?)",
                          {model(), below(7) - 1, limit(300), limit(4), limit(8)});
        for (int i = below(40); i > 0; --i)
            database.exec("INSERT INTO maintainance (car_id,operation_id,operation_time,person_id,"
                          "person_name,comment,operation_state,remote_id) VALUES (?,?,?,?,?,?,?,?)",
                          {carId(), rarely({QVariant(), "x"}, below(7) - 1), time(), below(4) - 1, "П",
                           oneOf({"стук", QString(), QVariant()}),
                           rarely({QVariant(), "открыто", 7}, below(2)), rarely({QVariant()}, below(100))});
        for (int i = below(150); i > 0; --i)
            database.exec("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) VALUES (?,?,?,?)",
                          {carId(), rarely({QVariant(), "заезд"}, below(6)), time(),
                           rarely({QVariant(), 0, -400, "долго", 1234.5, "5000"}, 20000 + below(50000))});
    }

private:
    int below(int limit) { return int(m_random.bounded(limit)); }
    QVariant oneOf(const QVariantList &values) { return values.at(below(int(values.size()))); }
    QVariant rarely(const QVariantList &odd, const QVariant &usual) { return below(12) ? usual : oneOf(odd); }
    QVariant carId() { return rarely({QVariant(), 99, "карт"}, below(8)); }
    QVariant model() { return oneOf({"Sodi", "RX", "sodi", ""}); }
    QVariant limit(int largest) { return rarely({-1, QVariant(), "много"}, below(3) ? below(largest) : 0); }
    QVariant time()
    {
        // Few different times, so that some are the same to the second.
        const QString date = QString("2026-03-%1").arg(7 + below(3), 2, 10, QLatin1Char('0'));
        const QString clock = QString("%1:%2")
                                  .arg(below(4), 2, 10, QLatin1Char('0'))
                                  .arg(below(3) * 15, 2, 10, QLatin1Char('0'));
        const QStringList forms {"%1T%2:00.000Z", "%1T%2Z", "%1 %2", "%1T%2+03:00"};
        return rarely({QVariant(), "вчера", 1700000000, "2026-03-08"},
                      forms.at(below(int(forms.size()))).arg(date, clock));
    }

    QRandomGenerator m_random;
};

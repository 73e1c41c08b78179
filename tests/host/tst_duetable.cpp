#include "support/garagetest.h"

#include "host/database/hostconnection.h"
#include "host/sessions/duetable.h"

#include <QJsonArray>
#include <QJsonDocument>

/// The due list as people read it in a terminal.
class TestDueTable final : public GarageTest
{
    Q_OBJECT

private slots:
    void anEmptyListIsOneSentence();
    void rowsAreSortedAlignedAndComplete();
    void oddDataStillGivesATable();

private:
    QStringList lines(const QByteArray &json);
};

QStringList TestDueTable::lines(const QByteArray &json)
{
    HostConnection connection(home().databasePath());
    return DueTable(connection).lines(QJsonDocument::fromJson(json).object());
}

void TestDueTable::anEmptyListIsOneSentence()
{
    createDatabase();
    QCOMPARE(lines(R"({"maintainanceStatus":[{"carId":1},{"carId":2}]})"),
             QStringList {"No service is due. Karts: 2"});
}

void TestDueTable::rowsAreSortedAlignedAndComplete()
{
    createDatabase()->addLimit("Вихрь", 3, 5400, 0, 120);
    const QStringList table = lines(R"({"servicePendingList":[
        {"carId":2,"carNum":"10","carModel":"Вихрь","opId":-1,"opName":"Стук","opDateTime":"2026-03-01T10:00"},
        {"carId":1,"carNum":"9","carModel":"Вихрь","opId":3,"opName":"Замена\nцепи","opDateTime":"2026-03-01T10:00"}],
        "maintainanceStatus":[{"carId":1,"opsStatus":{"3":{"tt":7200,"tl":130,"tr":11}}},{"carId":2}]})");
    QCOMPARE(table.size(), 8);
    QCOMPARE(table.at(4),
             "Вихрь  9     Замена цепи      01.03.2026 13:00  2.0 h, runs 11, laps 130  "
             "1.5 h, laps 120");
    QVERIFY(table.at(5).startsWith("Вихрь  10    Complaint: Стук  01.03.2026 13:00"));
    QCOMPARE(table.last(), "Entries: 2, karts in all: 2");
}

void TestDueTable::oddDataStillGivesATable()
{
    createDatabase();
    const QStringList table = lines(R"({"servicePendingList":[5,{},{"opDateTime":"soon","carId":"x"}]})");
    QCOMPARE(table.last(), "Entries: 3, karts in all: 0");
}

GARAGE_TEST_WITHOUT_WINDOWS(TestDueTable)
#include "tst_duetable.moc"

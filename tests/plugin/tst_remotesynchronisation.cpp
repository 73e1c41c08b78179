#include "support/garagetest.h"
#include "support/json.h"
#include "support/loadedplugin.h"
#include "support/moments.h"

#include <QDateTimeEdit>
#include <QDialog>
#include <QJsonDocument>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include <atomic>
#include <thread>

namespace {

const QString everyRecord = "SELECT remote_id,car_id,operation_id,operation_time,person_id,person_name,"
                            "comment,operation_state FROM maintainance ORDER BY id";

/// A complete record; the changes replace or, being undefined, take away keys.
QJsonObject record(int id, std::initializer_list<QPair<QString, QJsonValue>> changes = {})
{
    QJsonObject json {{"id", id},
                      {"carId", 1},
                      {"opId", 2},
                      {"opDoneDateTime", "2026-03-08T09:30Z"},
                      {"operatorName", "Пётр"},
                      {"operatorId", 5},
                      {"comment", "готово"}};
    for (const auto &[key, value] : changes) {
        if (value.isUndefined())
            json.remove(key);
        else
            json.insert(key, value);
    }
    return json;
}

QJsonObject person(const QJsonValue &code, int id, const QString &lastName)
{
    return {{"serviceCode", code},
            {"id", id},
            {"lastName", lastName},
            {"firstName", "Иван"},
            {"midName", "Ильич"}};
}

} // namespace

/// Service records that come from the remote side, and the life of a complaint between both sides.
class TestRemoteSynchronisation : public DatabaseTest
{
    Q_OBJECT
private slots:
    void aNewRecordIsInsertedAsDone();
    void aRecordSentTwiceUpdatesItsRow();
    void aLocalIdCompletesTheLocalRecord();
    void bothIdsMayUpdateSeveralRows();
    void theServiceCodeNamesThePerson_data();
    void theServiceCodeNamesThePerson();
    void missingKeysTakeTheirDefaults();
    void elementsThatAreNoRecordsCountAsEmptyOnes();
    void idsAreArchivedUnchangedAndInOrder();
    void aFailingUpdateInsertsNothing();
    void aFailingInsertLosesOnlyItsOwnRecord();
    void aBatchIsVisibleAsAWholeOrNotAtAll();
    void aComplaintGoesRoundBothSides();
    void anEveningAtTheTrack();

private:
    static void sendRecords(LoadedPlugin &host, const QJsonArray &records);
    /// Sends the records and waits until they are stored, reported and archived.
    static QJsonArray synchronise(LoadedPlugin &host, const QJsonArray &records);
    static QJsonArray pending(const QVector<LoadedPlugin::Message> &messages);
};

void TestRemoteSynchronisation::sendRecords(LoadedPlugin &host, const QJsonArray &records)
{
    host.send("remote_service_data",
              {{"data", QString(QJsonDocument(records).toJson(QJsonDocument::Compact))}});
}

QJsonArray TestRemoteSynchronisation::synchronise(LoadedPlugin &host, const QJsonArray &records)
{
    host.takeMessages();
    sendRecords(host, records);
    auto messages = host.awaitReload();
    if (!QTest::qWaitFor([&] {
            messages += host.takeMessages();
            return LoadedPlugin::names(messages).contains("remote_service_move_to_archive");
        }))
        QTest::qFail("Nothing was archived", __FILE__, __LINE__);
    if (LoadedPlugin::names(messages)
        != QStringList({"update_pending_service", "remote_service_move_to_archive"}))
        QTest::qFail(qPrintable(LoadedPlugin::names(messages).join(',')), __FILE__, __LINE__);
    return messages.last().data.value("idList").toArray();
}

QJsonArray TestRemoteSynchronisation::pending(const QVector<LoadedPlugin::Message> &messages)
{
    for (const auto &message : messages) {
        if (message.event == "update_pending_service")
            return message.data.value("servicePendingList").toArray();
    }
    return {"no list came"};
}

void TestRemoteSynchronisation::aNewRecordIsInsertedAsDone()
{
    LoadedPlugin host;
    QCOMPARE(synchronise(host, {record(40)}), QJsonArray({40}));
    QCOMPARE(database->rows(everyRecord), QStringList("40|1|2|2026-03-08T09:30Z|5|Пётр|готово|1"));
}

void TestRemoteSynchronisation::aRecordSentTwiceUpdatesItsRow()
{
    LoadedPlugin host;
    synchronise(host, {record(40)});
    synchronise(host, {record(40, {{"comment", "иначе"}, {"carId", 3}})});
    synchronise(host, {record(40), record(40, {{"opId", 9}})});
    QCOMPARE(database->rows(everyRecord), QStringList("40|1|9|2026-03-08T09:30Z|5|Пётр|готово|1"));
}

void TestRemoteSynchronisation::aLocalIdCompletesTheLocalRecord()
{
    const int localId = database->addRecord(1, -1, "2026-03-01T10:00:00.000Z", 0, "Стук");
    LoadedPlugin host;
    synchronise(host, {record(40, {{"localId", localId}, {"opId", -1}})});
    // The remote id of a record matched by its local id is not stored.
    QCOMPARE(database->rows(everyRecord), QStringList("NULL|1|-1|2026-03-08T09:30Z|5|Пётр|готово|1"));
}

void TestRemoteSynchronisation::bothIdsMayUpdateSeveralRows()
{
    const int localId = database->addRecord(1, -1, "2026-03-01T10:00Z", 0);
    database->addRecord(7, 7, "2026-03-02T10:00Z", 0);
    database->exec("UPDATE maintainance SET remote_id=40 WHERE car_id=7");
    LoadedPlugin host;
    synchronise(host, {record(40, {{"localId", localId}})});
    QCOMPARE(database->rows(everyRecord),
             QStringList(
                 {"NULL|1|2|2026-03-08T09:30Z|5|Пётр|готово|1", "40|1|2|2026-03-08T09:30Z|5|Пётр|готово|1"}));
}

void TestRemoteSynchronisation::theServiceCodeNamesThePerson_data()
{
    QTest::addColumn<QJsonArray>("people");
    QTest::addColumn<QJsonValue>("code");
    QTest::addColumn<QString>("stored");
    const QJsonArray people {person("111", 8, "Ким"), person("222", 9, "Цой")};
    const QString operatorKept = "5|Пётр";
    QTest::newRow("a match") << people << QJsonValue("222") << "9|Цой Иван Ильич";
    QTest::newRow("no match") << people << QJsonValue("333") << operatorKept;
    QTest::newRow("no code") << people << QJsonValue(QJsonValue::Undefined) << operatorKept;
    QTest::newRow("the last match wins")
        << QJsonArray {person("1", 8, "Ким"), person("1", 9, "Цой")} << QJsonValue("1") << "9|Цой Иван Ильич";
    QTest::newRow("a number is not a text")
        << QJsonArray {person(222, 9, "Цой")} << QJsonValue("222") << operatorKept;
    QTest::newRow("a number in the record reads as no code")
        << QJsonArray {person("", 9, "Цой")} << QJsonValue(222) << "9|Цой Иван Ильич";
    QTest::newRow("an entry without a code never matches")
        << QJsonArray {person(QJsonValue::Undefined, 9, "Цой")} << QJsonValue(QJsonValue::Undefined)
        << operatorKept;
    QTest::newRow("missing parts leave their blanks")
        << QJsonArray {json(R"({"serviceCode": "5", "lastName": "Ким"})")} << QJsonValue("5") << "-1|Ким  ";
}

void TestRemoteSynchronisation::theServiceCodeNamesThePerson()
{
    QFETCH(QJsonArray, people);
    QFETCH(QJsonValue, code);
    LoadedPlugin host;
    host.send("personal_list", {{"personalList", people}});
    synchronise(host, {record(40, {{"serviceCode", code}})});
    QTEST(database->rows("SELECT person_id,person_name FROM maintainance").first(), "stored");
}

void TestRemoteSynchronisation::missingKeysTakeTheirDefaults()
{
    LoadedPlugin host;
    QCOMPARE(synchronise(host, {json(R"({"unknown": 1})")}), QJsonArray({QJsonValue()}));
    QCOMPARE(database->rows(everyRecord), QStringList("-1|-1|-1||-1|||1"));
    // Another one without an id has the same id, -1.
    synchronise(host, {record(40, {{"id", QJsonValue::Undefined}, {"operatorId", QJsonValue::Undefined}})});
    QCOMPARE(database->rows(everyRecord), QStringList("-1|1|2|2026-03-08T09:30Z|-1|Пётр|готово|1"));
}

void TestRemoteSynchronisation::elementsThatAreNoRecordsCountAsEmptyOnes()
{
    LoadedPlugin host;
    QCOMPARE(synchronise(host, {5, "x", QJsonValue(), record(40)}),
             QJsonArray({QJsonValue(), QJsonValue(), QJsonValue(), 40}));
    QCOMPARE(database->rows(everyRecord),
             QStringList({"-1|-1|-1||-1|||1", "40|1|2|2026-03-08T09:30Z|5|Пётр|готово|1"}));
}

void TestRemoteSynchronisation::idsAreArchivedUnchangedAndInOrder()
{
    LoadedPlugin host;
    const QJsonArray ids {7, "8", 3.5, 7};
    QJsonArray records;
    for (const QJsonValue &id : ids)
        records.append(record(0, {{"id", id}}));
    QCOMPARE(synchronise(host, records), ids);
}

void TestRemoteSynchronisation::aFailingUpdateInsertsNothing()
{
    database->addRecord(1, 2, "2026-03-01T10:00Z", 0);
    database->exec("UPDATE maintainance SET remote_id=40");
    database->exec("CREATE TRIGGER fault BEFORE UPDATE ON maintainance WHEN new.comment='нет' "
                   "BEGIN SELECT RAISE(ABORT,'injected'); END");
    LoadedPlugin host;
    QCOMPARE(synchronise(host, {record(40, {{"comment", "нет"}}), record(41)}), QJsonArray({40, 41}));
    QCOMPARE(
        database->rows(everyRecord),
        QStringList({"40|1|2|2026-03-01T10:00Z|-1||NULL|0", "41|1|2|2026-03-08T09:30Z|5|Пётр|готово|1"}));
}

void TestRemoteSynchronisation::aFailingInsertLosesOnlyItsOwnRecord()
{
    database->exec("CREATE TRIGGER fault BEFORE INSERT ON maintainance WHEN new.remote_id=41 "
                   "BEGIN SELECT RAISE(ABORT,'injected'); END");
    LoadedPlugin host;
    synchronise(host, {record(40), record(41), record(42)});
    QCOMPARE(database->value("SELECT group_concat(remote_id) FROM maintainance").toString(), "40,42");
    // A fault that rolls the whole transaction back concerns the whole batch, not half of it.
    database->exec("DROP TRIGGER fault");
    database->exec("CREATE TRIGGER fault BEFORE INSERT ON maintainance WHEN new.remote_id=51 "
                   "BEGIN SELECT RAISE(ROLLBACK,'injected'); END");
    host.takeMessages();
    sendRecords(host, {record(50), record(51), record(52)});
    auto messages = host.awaitReload();
    host.send("run_saved_to_db");
    messages += host.awaitReload();
    QVERIFY(!LoadedPlugin::names(messages).contains("remote_service_move_to_archive"));
    QCOMPARE(database->value("SELECT group_concat(remote_id) FROM maintainance").toString(), "40,42");
    database->exec("DROP TRIGGER fault");
    synchronise(host, {record(50)});
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 3);
}

void TestRemoteSynchronisation::aBatchIsVisibleAsAWholeOrNotAtAll()
{
    constexpr int batchSize = 500;
    LoadedPlugin host;
    std::atomic<bool> done {false};
    std::atomic<int> looks {0};
    std::atomic<int> halves {0};
    std::thread reader([&, path = home().databasePath()] {
        const TestDatabase other(path, false);
        while (!done) {
            const int count = other.value("SELECT count(*) FROM maintainance").toInt();
            ++looks;
            if (count % batchSize != 0)
                ++halves;
        }
    });
    for (int batch = 0; batch < 4; ++batch) {
        QJsonArray records;
        for (int i = 0; i < batchSize; ++i)
            records.append(record(1 + batch * batchSize + i));
        QCOMPARE(synchronise(host, records).size(), batchSize);
    }
    done = true;
    reader.join();
    QVERIFY(looks > 10);
    QCOMPARE(halves.load(), 0);
    QCOMPARE(database->value("SELECT count(DISTINCT remote_id) FROM maintainance").toInt(), 4 * batchSize);
}

void TestRemoteSynchronisation::aComplaintGoesRoundBothSides()
{
    database->addCar(1, "10", "Sodi");
    LoadedPlugin host;
    host.showWindow();
    const auto complain = [&host](const QString &text) {
        QTimer::singleShot(0, &host, [text] {
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            dialog->findChild<QDateTimeEdit *>()->setDateTime(march(1, 10, 0));
            dialog->findChild<QPlainTextEdit *>()->setPlainText(text);
            dialog->accept();
        });
        host.send("car_complain", {{"carId", 1}});
        return pending(host.awaitReload());
    };

    QJsonArray waiting = complain("Стук");
    QCOMPARE(waiting.size(), 1);
    waiting = complain("Громкий стук");
    QCOMPARE(waiting.size(), 1);
    QCOMPARE(waiting.first().toObject(), json(R"({"carId": 1, "carNum": "10", "carModel": "Sodi", "opId": -1,
                     "opName": "Громкий стук", "opDateTime": "2026-03-01T10:00", "localId": 1})"));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 1);

    const auto *log = host.window()->findChild<QTreeView *>("tvServiceLog")->model();
    QTRY_COMPARE(log->rowCount(), 1);
    QCOMPARE(log->index(0, 6).data(Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 127, 127));

    synchronise(host, {record(40, {{"localId", waiting.first().toObject().value("localId")}, {"opId", -1}})});
    host.send("run_saved_to_db");
    QVERIFY(pending(host.awaitReload()).isEmpty());
    QTRY_COMPARE(log->index(0, 6).data().toString(), "готово");
    QVERIFY(log->index(0, 6).data(Qt::BackgroundRole).value<QBrush>().color() != QColor(255, 127, 127));
    QCOMPARE(database->value("SELECT count(*) FROM maintainance").toInt(), 1);
}

void TestRemoteSynchronisation::anEveningAtTheTrack()
{
    database->addCar(1, "10", "Sodi");
    database->addOperation(2, "Масло");
    database->addLimit("Sodi", 2, 0, 0, 2);
    database->addRecord(1, 2, "2026-03-01T10:00:00.000Z", 1);
    LoadedPlugin host;
    host.showWindow();
    auto *table = host.window()->findChild<QTreeView *>("tvMaintainanceTable");

    // The host records a run of three laps.
    for (int lap = 0; lap < 3; ++lap)
        database->addLap(1, 1, QString("2026-03-02T10:0%1:00.000Z").arg(lap), 60000);
    host.send("run_saved_to_db");
    const QJsonArray waiting = pending(host.awaitReload());
    QCOMPARE(waiting.size(), 1);
    QCOMPARE(waiting.first().toObject().value("opName").toString(), "Масло");
    QTRY_COMPARE(table->model()->index(0, 3).data().toString(),
                 shown("2026-03-01 10:00") + "\n0.1 ч., 1 з., 3 кр.");

    // The mechanic changes the oil: hover, button, dialog.
    const QRect cell = table->visualRect(table->model()->index(0, 3));
    QTest::mouseMove(table->viewport(), cell.center() + QPoint(1, 1));
    QTest::mouseMove(table->viewport(), cell.center());
    QPushButton *button = nullptr;
    for (QPushButton *candidate : table->viewport()->findChildren<QPushButton *>()) {
        if (candidate->isVisible())
            button = candidate;
    }
    QVERIFY(button);
    QTimer::singleShot(0, &host, [] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        dialog->findChild<QDateTimeEdit *>()->setDateTime(march(2, 17, 0));
        dialog->accept();
    });
    QTest::mouseClick(button, Qt::LeftButton);
    const auto messages = host.awaitReload();
    QCOMPARE(LoadedPlugin::names(messages), QStringList({"add_remote_service", "update_pending_service"}));
    QCOMPARE(messages.first().module, "garage_plugin");
    QCOMPARE(messages.first().data,
             json(R"({"carId": 1, "opId": 2, "opName": "Масло", "opTime": "2026-03-02 17:00",
                     "pId": -1, "pName": "", "comment": ""})"));
    QVERIFY(pending(messages).isEmpty());
    QTRY_COMPARE(table->model()->index(0, 3).data().toString(), shown("2026-03-02 17:00"));
}

GARAGE_TEST(TestRemoteSynchronisation)
#include "tst_remotesynchronisation.moc"

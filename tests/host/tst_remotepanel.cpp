#include "support/garagetest.h"
#include "support/userinput.h"
#include "tests/host/hostfixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QTableView>

namespace {

/// Reports the track's open records as due.
void reportOpenRecords(const HostFixture &fixture, const TestDatabase &track)
{
    QJsonArray pending;
    QSqlQuery open = track.exec("SELECT id,car_id,operation_id,comment FROM maintainance "
                                "WHERE operation_state=0 ORDER BY operation_id,id");
    while (open.next()) {
        const int operation = open.value(2).toInt();
        const QString name = operation < 0 ? open.value(3).toString() : QString("Замена масла");
        pending.append(QJsonObject {{"localId", open.value(0).toInt()},
                                    {"carId", open.value(1).toInt()},
                                    {"carNum", "2"},
                                    {"carModel", "Вихрь"},
                                    {"opId", operation},
                                    {"opName", name}});
    }
    fixture.host->plugin().send(
        "say",
        {{"event", "update_pending_service"}, {"data", QJsonObject {{"servicePendingList", pending}}}});
    QCoreApplication::processEvents();
}

} // namespace

/// The panel of the remote side.
class TestRemotePanel final : public GarageTest
{
    Q_OBJECT

private slots:
    void aCompletionStartsWithTheTextThatItReplaces();
    void aRequestWithNothingWaitingIsAnsweredByAnEmptyList();
};

void TestRemotePanel::aCompletionStartsWithTheTextThatItReplaces()
{
    const HostFixture fixture = makeHostFixture();
    const TestDatabase track(home().databasePath(), false);
    reportOpenRecords(fixture, track);
    auto *list = fixture.find<QTableView>("pendingTableView");
    auto *comment = fixture.find<QLineEdit>("remoteCommentLineEdit");
    const int task = list->model()->rowCount() - 1; // a complaint is the first
    list->selectRow(task);
    QCOMPARE(comment->text(), "сделать до следующей смены");
    list->selectRow(0);
    QCOMPARE(comment->text(), "Стук в задней оси");

    comment->setText("Стук в задней оси: отрегулировано");
    reportOpenRecords(fixture, track); // a reload meanwhile
    QCOMPARE(list->currentIndex().row(), 0);
    QCOMPARE(comment->text(), "Стук в задней оси: отрегулировано");
    fixture.click("remoteDonePushButton");
    const QByteArray records = fixture.lastSent("remote_service_data").value("data").toString().toUtf8();
    QCOMPARE(QJsonDocument::fromJson(records).array().at(0).toObject().value("comment").toString(),
             "Стук в задней оси: отрегулировано");
    QCOMPARE(comment->text(), QString());
    QVERIFY(
        !fixture.find<QPushButton>("remoteDonePushButton")->isEnabled()); // until a record is chosen again
}

void TestRemotePanel::aRequestWithNothingWaitingIsAnsweredByAnEmptyList()
{
    const HostFixture fixture = makeHostFixture();
    fixture.host->plugin().send("say", {{"event", "update_remote_service"}});
    QCoreApplication::processEvents();
    QCOMPARE(fixture.lastSent("remote_service_data"), QJsonObject({{"data", "[]"}}));
}

GARAGE_TEST(TestRemotePanel)
#include "tst_remotepanel.moc"

#include "host/database/datafolder.h"
#include "host/remote/web/phonedialog.h"
#include "host/remote/web/qrcode.h"
#include "host/remote/web/webservice.h"
#include "support/databaselock.h"
#include "support/garagetest.h"
#include "support/json.h"
#include "support/userinput.h"
#include "tests/host/hostfixture.h"
#include "tests/host/webclient.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QJsonDocument>
#include <QLabel>
#include <QListWidget>
#include <QTimer>
#include <QUrl>

#include <future>

using namespace std::chrono_literals;

namespace {

/// Runs the function in another thread while this one handles events.
template<typename Function> auto meanwhile(Function function)
{
    auto result = std::async(std::launch::async, function);
    while (result.wait_for(1ms) != std::future_status::ready)
        QCoreApplication::processEvents();
    return result.get();
}

std::string workBody(const QString &key, int carId, int opId, int localId, const QString &comment = "сделано",
                     const QString &time = "2026-11-22T08:15:30.000Z")
{
    const QJsonObject work {{"key", key},          {"car_id", carId},    {"op_id", opId},
                            {"local_id", localId}, {"comment", comment}, {"done_time", time}};
    return QJsonDocument(QJsonObject {{"services", QJsonArray {work}}}).toJson().toStdString();
}

} // namespace

/// The page and the demo host behind it.
class TestWebService final : public GarageTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aTickIsStoredOnceAndSent();
    void ofTwoTicksOfOneOpenRecordTheSecondIsARecordOfItsOwn();
    void anOpenRecordOfAnotherKartIsLeftAlone();
    void workForUnknownKartsAndOperationsIsRefused();
    void aTimeToComeIsNow();
    void ticksWaitUntilWhatWasSentIsArchived();
    void whatIsNotArchivedIsSentAgain();
    void aSwitchIsSentOnceUntilItHasWorked();
    void thePageShowsWhatTheHostKnows();
    void aRemovedPersonIsSignedOut();
    void aLockedFileIsBusyAndBlocksNobody();
    void theDialogShowsAddressCodeAndPeople();
    void theDialogNamesWhatItCannotDo();

private:
    WebAnswer post(const std::string &body)
    {
        return meanwhile([this, body] { return m_page->post("/api/services", body); });
    }
    QJsonObject result(const std::string &body)
    {
        return json(post(body).body.c_str()).value("results").toArray().first().toObject();
    }
    QJsonObject state()
    {
        return json(meanwhile([this] { return m_page->get("/api/state"); }).body.c_str());
    }
    /// What the latest message with records says.
    QJsonArray lastSent() const
    {
        return jsonArray(m_fixture.lastSent("remote_service_data").value("data").toString().toUtf8());
    }
    void say(const char *event, const QJsonObject &data)
    {
        m_fixture.host->plugin().send("say", {{"event", event}, {"data", data}});
        QCoreApplication::processEvents();
    }
    void archive(const QJsonArray &ids) { say("remote_service_move_to_archive", {{"idList", ids}}); }

    HostFixture m_fixture;
    std::unique_ptr<TestDatabase> m_track;
    std::unique_ptr<WebPage> m_page;
    HostPerson m_person;
};

void TestWebService::init()
{
    GarageTest::init();
    m_fixture = makeHostFixture();
    m_track = std::make_unique<TestDatabase>(home().databasePath(), false);
    WebAccess access;
    access.endpoint.port = 0;
    QVERIFY(m_fixture.host->web().start(access));
    m_person = m_fixture.host->fleet().people().list().first();
    m_page = std::make_unique<WebPage>(std::uint16_t(QUrl(m_fixture.host->web().url()).port()));
    const std::string code = m_person.serviceCode.toStdString();
    QCOMPARE(meanwhile([&] { return m_page->signIn(code); }), 200);
}

void TestWebService::cleanup()
{
    m_page.reset();
    m_track.reset();
    m_fixture.window.reset();
    m_fixture.host.reset();
    GarageTest::cleanup();
}

void TestWebService::aTickIsStoredOnceAndSent()
{
    QCOMPARE(result(workBody("key-00001", 101, 1, -1)),
             json(R"({"key":"key-00001","id":1,"state":"waiting"})"));
    const QJsonObject sent = lastSent().first().toObject();
    QCOMPARE(sent.value("serviceCode").toString(), m_person.serviceCode);
    QCOMPARE(sent.value("operatorId").toInt(), m_person.id);
    QCOMPARE(sent.value("opDoneDateTime").toString(), QString("2026-11-22T08:15:30.000Z"));
    QCOMPARE(sent.value("comment").toString(), QString("сделано"));

    // However often it comes, in whatever order, with whatever else.
    QCOMPARE(result(workBody("key-00002", 102, 1, -1)).value("id").toInt(), 2);
    for (const char *state : {"sent", "archived"}) {
        QCOMPARE(result(workBody("key-00001", 103, 2, -1)),
                 QJsonObject({{"key", "key-00001"}, {"id", 1}, {"state", state}}));
        archive({1});
    }
    QCOMPARE(m_fixture.host->remote().store().latest(10).size(), 2);
}

void TestWebService::ofTwoTicksOfOneOpenRecordTheSecondIsARecordOfItsOwn()
{
    const int open = m_track->addRecord(101, 1, "2026-03-01T10:00:00.000Z", 0, "задание");
    result(workBody("key-00001", 101, 1, open));
    result(workBody("key-00002", 101, 1, open));
    const QVector<RemoteRecord> records = m_fixture.host->remote().store().latest(2);
    QCOMPARE(records.last().localId, open);
    QCOMPARE(records.first().localId, -1);
    m_track->exec("UPDATE maintainance SET operation_state=1 WHERE id=?", {open});
    archive({1, 2});
    result(workBody("key-00003", 101, 1, open)); // done by now
    QCOMPARE(m_fixture.host->remote().store().latest(1).first().localId, -1);
}

void TestWebService::anOpenRecordOfAnotherKartIsLeftAlone()
{
    const int open = m_track->addRecord(101, 1, "2026-03-01T10:00:00.000Z", 0, "задание");
    result(workBody("key-00001", 102, 1, open));
    result(workBody("key-00002", 101, 2, open));
    for (const RemoteRecord &record : m_fixture.host->remote().store().latest(2))
        QCOMPARE(record.localId, -1);
}

void TestWebService::workForUnknownKartsAndOperationsIsRefused()
{
    QCOMPARE(result(workBody("key-00001", 999, 1, -1)), json(R"({"key":"key-00001","error":"unknown_car"})"));
    QCOMPARE(result(workBody("key-00002", 101, 999, -1)),
             json(R"({"key":"key-00002","error":"unknown_op"})"));
    QCOMPARE(result(workBody("short", 101, 1, -1)), json(R"({"key":"","error":"invalid"})"));
    QCOMPARE(m_fixture.host->remote().store().latest(10).size(), 0);
    QCOMPARE(result(workBody("key-00003", 101, -1, -1)).value("id").toInt(),
             1); // a complaint has no operation
}

void TestWebService::aTimeToComeIsNow()
{
    result(workBody("key-00001", 101, 1, -1, {}, "2999-01-01T00:00:00Z"));
    const QString time = m_fixture.host->remote().store().latest(1).first().doneTime;
    QVERIFY2(time <= QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs), qPrintable(time));
}

void TestWebService::ticksWaitUntilWhatWasSentIsArchived()
{
    result(workBody("key-00001", 101, 1, -1));
    result(workBody("key-00002", 102, 1, -1));
    result(workBody("key-00003", 103, 1, -1));
    QCOMPARE(m_fixture.countSent("remote_service_data"), 1);
    archive({1});
    QCOMPARE(m_fixture.countSent("remote_service_data"), 2);
    QCOMPARE(lastSent().size(), 2);
    archive({2, 3});
    QCOMPARE(m_fixture.countSent("remote_service_data"), 2);
    QCOMPARE(m_fixture.host->remote().store().count(RemoteRecord::Archived), 3);
}

void TestWebService::whatIsNotArchivedIsSentAgain()
{
    result(workBody("key-00001", 101, 1, -1));
    result(workBody("key-00002", 102, 1, -1));
    auto *timer = child<QTimer>(m_fixture.host->remote(), "resendTimer");
    QVERIFY(timer->isActive());
    const int delay = timer->interval();
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
    QCOMPARE(m_fixture.countSent("remote_service_data"), 2);
    QCOMPARE(timer->interval(), 2 * delay);
    QCOMPARE(lastSent().size(), 1);
    QCOMPARE(lastSent().first().toObject().value("id").toInt(), 1);
    archive({1});
    QCOMPARE(m_fixture.countSent("remote_service_data"), 3);
    archive({2});
    QVERIFY(!timer->isActive());
    QCOMPARE(timer->interval(), delay);
}

void TestWebService::aSwitchIsSentOnceUntilItHasWorked()
{
    const HostCar car = m_fixture.host->fleet().cars().list().first();
    const std::string path = "/api/karts/" + std::to_string(car.id);
    const auto want = [&](bool available) {
        const std::string body = available ? R"({"available":true})" : R"({"available":false})";
        return meanwhile([&] { return m_page->put(path, body); }).status;
    };
    QCOMPARE(want(car.available), 200); // as it is
    QCOMPARE(m_fixture.countSent("remote_control_data"), 0);
    QCOMPARE(want(!car.available), 200);
    QCOMPARE(want(!car.available), 200);
    QCOMPARE(m_fixture.countSent("remote_control_data"), 1);
    say("update_cars",
        {{"command", "set_availability"},
         {"carsIdsList", QJsonArray {car.id}},
         {"available", int(!car.available)}});
    QTRY_COMPARE(m_fixture.host->fleet().cars().list().first().available, !car.available);
    QCOMPARE(want(!car.available), 200);
    QCOMPARE(m_fixture.countSent("remote_control_data"), 1);
    QCOMPARE(want(car.available), 200);
    QCOMPARE(m_fixture.countSent("remote_control_data"), 2);
    QCOMPARE(meanwhile([&] { return m_page->put("/api/karts/999", R"({"available":true})"); }).status, 404);
}

void TestWebService::thePageShowsWhatTheHostKnows()
{
    const int open = m_track->addRecord(101, 2, "2026-03-01T10:00:00.000Z", 0, "<b>задание</b>");
    m_track->exec("REPLACE INTO service_reglament VALUES ('Вихрь',2,3600,0,40)");
    say("update_pending_service",
        json(QString(R"({"servicePendingList":[{"carId":101,"carNum":"1","carModel":"Вихрь","opId":2,
                         "opName":"Тормоза","opDateTime":"2026-03-01T10:00","localId":%1}],
                         "maintainanceStatus":[{"carId":101,"opsStatus":{"2":{"tt":7200,"tl":90,"tr":7,"dt":""}}}]})")
                 .arg(open)
                 .toUtf8()));
    result(workBody("key-00001", 101, 1, -1, "готово",
                    QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)));
    QTRY_VERIFY(!state().value("records").toArray().isEmpty());
    const QJsonObject due = state().value("due").toArray().first().toObject();
    QCOMPARE(due.value("kind").toString(), QString("open"));
    QCOMPARE(due.value("comment").toString(), QString("<b>задание</b>"));
    QCOMPARE(due.value("since").toString(), QString("2026-03-01T10:00Z"));
    QCOMPARE(due.value("driven").toObject(), json(R"({"seconds":7200,"runs":7,"laps":90})"));
    QCOMPARE(due.value("limits").toObject(), json(R"({"seconds":3600,"runs":0,"laps":40})"));
    const QJsonObject record = state().value("records").toArray().first().toObject();
    QCOMPARE(record.value("comment").toString(), QString("готово"));
    QCOMPARE(record.value("key").toString(), QString("key-00001"));
    QCOMPARE(record.value("state").toString(), QString("sent"));
    QCOMPARE(state().value("karts").toArray().size(), m_fixture.host->fleet().cars().list().size());
}

void TestWebService::aRemovedPersonIsSignedOut()
{
    m_fixture.host->fleet().removePerson(m_person.id);
    QTRY_COMPARE(meanwhile([this] { return m_page->get("/api/state"); }).status, 401);
    QCOMPARE(post(workBody("key-00001", 101, 1, -1)).status, 401);
}

void TestWebService::aLockedFileIsBusyAndBlocksNobody()
{
    const DatabaseLock lock(DataFolder::userDocuments().remoteRecordsPath(), DatabaseLock::Exclusive, 60000);
    QElapsedTimer sinceEvents;
    qint64 longest = 0;
    auto answer = std::async(std::launch::async, [this] {
        return m_page->post("/api/services", workBody("key-00001", 101, 1, -1));
    });
    while (answer.wait_for(0ms) != std::future_status::ready) {
        sinceEvents.start();
        QCoreApplication::processEvents();
        longest = std::max(longest, sinceEvents.elapsed());
    }
    QCOMPARE(answer.get().status, 503);
    QVERIFY2(longest < 200, qPrintable(QString::number(longest))); // a statement waits 1500 ms elsewhere
    QVERIFY(lock.isHeld());
}

void TestWebService::theDialogShowsAddressCodeAndPeople()
{
    m_fixture.click("phonePushButton");
    auto *dialog = m_fixture.find<PhoneDialog>("phoneDialog");
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->findChild<QLabel *>("phoneUrlLabel")->text(), m_fixture.host->web().url());
    auto *clients = dialog->findChild<QListWidget *>("phoneClientsListWidget");
    QCOMPARE(clients->count(), 1);
    {
        WebConnection stream(std::uint16_t(QUrl(m_fixture.host->web().url()).port()));
        stream.send(m_page->bytes("GET", "/api/events"));
        QTRY_VERIFY(clients->item(0)->text().contains(m_person.lastName));
        QVERIFY(clients->item(0)->text().contains("127.0.0.1"));
    }

    // What is painted is the code of the address: each module is a square of its colour.
    const QImage code = QrCode::image(m_fixture.host->web().url());
    const QImage painted = dialog->findChild<QrCode *>("phoneQrCode")->grab().toImage();
    const int factor = std::min(painted.width(), painted.height()) / code.width();
    QVERIFY(factor >= 3);
    const QPoint corner((painted.width() - code.width() * factor) / 2,
                        (painted.height() - code.height() * factor) / 2);
    for (int y = 0; y < code.height(); ++y) {
        for (int x = 0; x < code.width(); ++x)
            QCOMPARE(painted.pixel(corner + QPoint(x, y) * factor + QPoint(1, 1)), code.pixel(x, y));
    }

    press(child<QAbstractButton>(*dialog, "phoneTogglePushButton"));
    QVERIFY(!m_fixture.host->web().isRunning());
    QCOMPARE(dialog->findChild<QLabel *>("phoneUrlLabel")->text(), QString());
    QCOMPARE(meanwhile([this] { return m_page->get("/"); }).status, 0);
}

void TestWebService::theDialogNamesWhatItCannotDo()
{
    m_fixture.click("phonePushButton");
    auto *dialog = m_fixture.find<PhoneDialog>("phoneDialog");
    press(child<QAbstractButton>(*dialog, "phoneTogglePushButton"));
    auto *address = dialog->findChild<QComboBox *>("phoneAddressComboBox");
    auto *error = dialog->findChild<QLabel *>("phoneErrorLabel");
    address->setEditText("garage:80");
    press(child<QAbstractButton>(*dialog, "phoneTogglePushButton"));
    QVERIFY(error->isVisible());
    address->setEditText("192.0.2.1:8080"); // of no machine
    press(child<QAbstractButton>(*dialog, "phoneTogglePushButton"));
    QVERIFY2(error->text().contains("192.0.2.1:8080"), qPrintable(error->text()));
    QVERIFY(!m_fixture.host->web().isRunning());
    address->setEditText("127.0.0.1:0");
    press(child<QAbstractButton>(*dialog, "phoneTogglePushButton"));
    QVERIFY(m_fixture.host->web().isRunning());
    QVERIFY(!error->isVisible());
}

GARAGE_TEST(TestWebService)
#include "tst_webservice.moc"

#include "support/garagetest.h"
#include "tests/host/hostfixture.h"

#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QSpinBox>

/// The panel of the track: a manual run, the live simulation.
class TestTrackPanel final : public GarageTest
{
    Q_OBJECT

private slots:
    void aManualRunReachesTheFile();
    void errorAndNumbersStayWhileKartsDrive();
};

void TestTrackPanel::aManualRunReachesTheFile()
{
    const HostFixture fixture = makeHostFixture();
    const TestDatabase database(home().databasePath(), false);
    const int before = database.value("SELECT count(*) FROM laps").toInt();
    fixture.click("recordRunPushButton");
    auto *cars = fixture.find<QListWidget>("runCarsListWidget");
    cars->item(0)->setCheckState(Qt::Checked);
    cars->item(2)->setCheckState(Qt::Checked);
    fixture.find<QSpinBox>("lapsSpinBox")->setValue(9);
    const int sent = fixture.countSent("run_saved_to_db");
    fixture.click("recordRunPushButton");
    QTRY_COMPARE(fixture.countSent("run_saved_to_db"), sent + 1);
    QCOMPARE(database.value("SELECT count(*) FROM laps").toInt(), before + 18);
}

void TestTrackPanel::errorAndNumbersStayWhileKartsDrive()
{
    const HostFixture fixture = makeHostFixture();
    const auto *error = fixture.find<QLabel>("trackErrorLabel");
    const auto *onTrack = fixture.find<QLabel>("onTrackLabel");
    Track &track = fixture.host->track();
    track.setSpeed(1);
    track.setLive(true);
    QTRY_VERIFY(onTrack->text().contains(QRegularExpression("no\\..\\d")));
    QVector<int> everyCar;
    for (const HostCar &car : fixture.host->fleet().cars().list())
        everyCar.append(car.id);
    fixture.host->fleet().setAvailable(everyCar, false);
    QTRY_VERIFY(!fixture.host->fleet().cars().list().last().available);
    emit track.failed("locked");
    emit track.changed();
    const QRegularExpression id("no\\..\\d{3}"); // ids are from 101, numbers to 24
    QVERIFY2(!onTrack->text().contains(id), qPrintable(onTrack->text()));
    QVERIFY(error->text().contains("locked"));
    emit track.lapsSaved();
    QVERIFY(error->text().isEmpty());
}

GARAGE_TEST(TestTrackPanel)
#include "tst_trackpanel.moc"

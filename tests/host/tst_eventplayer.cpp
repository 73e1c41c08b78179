#include "support/garagetest.h"

#include "host/messages/eventplayer.h"
#include "host/messages/messagelogmodel.h"
#include "host/plugin/pluginhost.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QSignalSpy>

/// Files of events: played, refused, recorded and played again.
class TestEventPlayer final : public GarageTest
{
    Q_OBJECT

private slots:
    void eventsArePlayedInOrderWithWaits();
    void aBadLineIsNamed_data();
    void aBadLineIsNamed();
    void aMissingFileIsNamed();
    void aWaitForTheAnswerEndsWithIt();
    void cancellingEndsBeforeTheNextStep();
    void aSavedJournalPlaysWhatThePluginWasTold();
    void theJournalDropsItsOldestMessagesBeforeTheyFillTheMemory();

private:
    QString write(const QByteArray &text);
    static QStringList toldEvents(const MessageLogModel &journal);
};

QString TestEventPlayer::write(const QByteArray &text)
{
    QFile file(home().path() + "/play.jsonl");
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return {};
    return file.fileName();
}

QStringList TestEventPlayer::toldEvents(const MessageLogModel &journal)
{
    QStringList events;
    for (int row = 0; row < journal.rowCount(); ++row) {
        if (journal.entry(row).toPlugin)
            events.append(journal.entry(row).event);
    }
    return events;
}

void TestEventPlayer::eventsArePlayedInOrderWithWaits()
{
    PluginHost plugin;
    QVERIFY(plugin.load(FAKE_PLUGIN));
    MessageLogModel journal(plugin);
    const QAbstractItemModelTester tester(&journal, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EventPlayer player(plugin);
    QVERIFY(player.load(write("{\"event\":\"run_closed\"}\n{\"wait\":50}\n\n{\"screenshot\":\"one\"}\n"
                              "{\"event\":\"car_complain\",\"data\":{\"carId\":3}}\n")));
    QCOMPARE(player.stepCount(), 4);
    QSignalSpy finished(&player, &EventPlayer::finished);
    QSignalSpy pictures(&player, &EventPlayer::screenshotWanted);
    player.start();
    QVERIFY(finished.wait());
    QCOMPARE(finished.first().first().toBool(), true);
    QCOMPARE(pictures.first().first().toString(), "one");
    QCOMPARE(toldEvents(journal), (QStringList {"run_closed", "car_complain"}));
    QCOMPARE(journal.entry(2).data().value("carId").toInt(), 3);
}

void TestEventPlayer::aBadLineIsNamed_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("no JSON") << QByteArray("hello");
    QTest::newRow("no event") << QByteArray("{\"data\":{}}");
    QTest::newRow("an array") << QByteArray("[]");
    QTest::newRow("empty event") << QByteArray("{\"event\":\"\"}");
}

void TestEventPlayer::aBadLineIsNamed()
{
    QFETCH(const QByteArray, line);
    PluginHost plugin;
    EventPlayer player(plugin);
    const QString error = player.load(write("{\"event\":\"run_closed\"}\n" + line + "\n")).errorText();
    QVERIFY2(error.contains("line 2"), qPrintable(error));
}

void TestEventPlayer::aMissingFileIsNamed()
{
    PluginHost plugin;
    EventPlayer player(plugin);
    QVERIFY(player.load("/nowhere/play.jsonl").errorText().contains("/nowhere/play.jsonl"));
}

void TestEventPlayer::aWaitForTheAnswerEndsWithIt()
{
    PluginHost plugin;
    QVERIFY(plugin.load(FAKE_PLUGIN));
    MessageLogModel journal(plugin);
    EventPlayer player(plugin);
    QVERIFY(player.load(
        write("{\"event\":\"run_saved_to_db\"}\n{\"wait\":\"answer\"}\n{\"event\":\"run_closed\"}\n")));
    QSignalSpy finished(&player, &EventPlayer::finished);
    player.start();
    QVERIFY(finished.wait());
    QStringList events;
    for (int row = 0; row < journal.rowCount(); ++row)
        events.append(journal.entry(row).event);
    QVERIFY(events.indexOf("update_pending_service") < events.indexOf("run_closed"));
    QVERIFY(events.contains("update_pending_service"));
}

void TestEventPlayer::cancellingEndsBeforeTheNextStep()
{
    PluginHost plugin;
    QVERIFY(plugin.load(FAKE_PLUGIN));
    MessageLogModel journal(plugin);
    EventPlayer player(plugin);
    QVERIFY(player.load(write("{\"event\":\"run_closed\"}\n{\"wait\":60000}\n{\"event\":\"run_closed\"}\n")));
    QSignalSpy finished(&player, &EventPlayer::finished);
    player.start();
    QTRY_COMPARE(toldEvents(journal).size(), 1);
    player.cancel();
    QVERIFY(finished.wait());
    QCOMPARE(toldEvents(journal).size(), 1);
}

void TestEventPlayer::aSavedJournalPlaysWhatThePluginWasTold()
{
    PluginHost plugin;
    QVERIFY(plugin.load(FAKE_PLUGIN));
    MessageLogModel journal(plugin);
    plugin.send("run_closed", {{"text", "кавычки \" и \n"}});
    plugin.send("clicked");
    QVERIFY(journal.rowCount() > 2);
    const QString file = home().path() + "/journal.jsonl";
    QVERIFY(journal.save(file));
    QVERIFY(!journal.save("/nowhere/journal.jsonl"));

    MessageLogModel second(plugin);
    EventPlayer player(plugin);
    QVERIFY(player.load(file));
    QSignalSpy finished(&player, &EventPlayer::finished);
    player.start();
    QVERIFY(finished.wait());
    QCOMPARE(toldEvents(second), (QStringList {"run_closed", "clicked"}));
    QCOMPARE(second.entry(0).data(), journal.entry(0).data());
}

void TestEventPlayer::theJournalDropsItsOldestMessagesBeforeTheyFillTheMemory()
{
    PluginHost plugin;
    MessageLogModel journal(plugin);
    const QAbstractItemModelTester tester(&journal, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QString megabyte(1 << 20, 'x');
    for (int number = 0; number < 40; ++number) {
        emit plugin.received({QString(),
                              QString::number(number),
                              {{"text", QString(megabyte).append(QString::number(number))}}});
        QVERIFY(journal.rowCount() <= 10);
    }
    const int rows = journal.rowCount();
    QVERIFY(rows >= 5);
    for (int row = 0; row < rows; ++row)
        QCOMPARE(journal.entry(row).event, QString::number(40 - rows + row));

    journal.clear();
    emit plugin.received({QString(), "small", {}});
    QCOMPARE(journal.rowCount(), 1);
}

GARAGE_TEST(TestEventPlayer)
#include "tst_eventplayer.moc"

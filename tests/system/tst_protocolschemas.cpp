#include "support/garagetest.h"
#include "support/testdatabase.h"

#include "host/app/demohost.h"
#include "host/app/hostwindow.h"
#include "host/database/datafolder.h"
#include "host/database/hostdatabase.h"
#include "host/messages/eventexamples.h"
#include "host/sample/sampledata.h"
#include "trivexplugininterface.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QJsonDocument>
#include <QMessageBox>
#include <QPluginLoader>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <QtTest>

#include <algorithm>

namespace {

struct Verdict
{
    int exitCode = -1;
    QString output;
};

Verdict checkProtocol(const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(PYTHON, QStringList(CHECK_PROTOCOL) + arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000))
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAll())};
}

Verdict checkMessages(const QVector<HostMessage> &messages, const QStringList &required = {})
{
    QByteArray lines;
    for (const HostMessage &message : messages)
        lines += message.toJsonLine() + '\n';
    return checkProtocol({"--require", required.join(','), "-"}, lines);
}

/// Accepts every dialog that opens while this object lives, questions included.
class Acceptor final : public QObject
{
public:
    Acceptor()
    {
        connect(&m_timer, &QTimer::timeout, this, [] {
            if (auto *question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                question->button(QMessageBox::Yes)->click();
            else if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
                dialog->accept();
        });
        m_timer.start(20);
    }

private:
    QTimer m_timer;
};

} // namespace

/// The messages between host and module, checked against the published schemas.
class TestProtocolSchemas final : public GarageTest
{
    Q_OBJECT

private slots:
    void theSchemasAcceptTheirOwnExamples();
    void wrongMessagesAreRefused_data();
    void wrongMessagesAreRefused();
    void theGuidesExamplesAreRight();
    void eachMessageOfAWorkingDayIsRight();
};

void TestProtocolSchemas::theSchemasAcceptTheirOwnExamples()
{
    const Verdict verdict = checkProtocol({});
    QVERIFY2(verdict.exitCode == 0, qPrintable(verdict.output));
}

void TestProtocolSchemas::wrongMessagesAreRefused_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("unknown event") << QByteArray(R"({"event":"kart_washed","data":{}})");
    QTest::newRow("missing key") << QByteArray(R"({"event":"remote_service_delete","data":{"localId":1}})");
    QTest::newRow("key too many") << QByteArray(
        R"({"event":"remote_service_delete","data":{"localId":1,"remoteId":-1,"x":1}})");
    QTest::newRow("fraction for an integer")
        << QByteArray(R"({"event":"remote_service_delete","data":{"localId":1.5,"remoteId":-1}})");
    QTest::newRow("time with seconds") << QByteArray(
        R"({"event":"update_pending_service","data":{"servicePendingList":[],"maintainanceStatus":[)"
        R"({"carId":1,"opsStatus":{"1":{"tt":1,"tl":1,"tr":1,"dt":"2026-03-01T10:00:00"}}}]}})");
    QTest::newRow("record inside a text")
        << QByteArray(R"({"event":"remote_service_data","data":{"data":"[{\"id\":\"900\"}]"}})");
}

void TestProtocolSchemas::wrongMessagesAreRefused()
{
    QFETCH(QByteArray, line);
    const Verdict verdict = checkProtocol({"-"}, line + '\n');
    QVERIFY2(verdict.exitCode == 1, qPrintable(verdict.output));
}

void TestProtocolSchemas::theGuidesExamplesAreRight()
{
    QStringList events;
    for (const EventExample &example : eventExamples())
        events.append(example.event);
    const Verdict verdict = checkProtocol({"--require", events.join(','), HOST_GUIDE});
    QVERIFY2(verdict.exitCode == 0, qPrintable(verdict.output));
}

void TestProtocolSchemas::eachMessageOfAWorkingDayIsRight()
{
    const DataFolder documents = DataFolder::userDocuments();
    QVERIFY(HostDatabase::prepare(documents));
    DemoHost host(documents, 1);
    QCOMPARE(generateSampleData(host.connection(), SampleKind::Sample, 1, QDateTime::currentDateTimeUtc(),
                                [](int) { return true; }),
             SampleOutcome::Done);
    QVERIFY(host.plugin().load(GARAGE_PLUGIN_FILE));
    QPluginLoader sameLibrary(GARAGE_PLUGIN_FILE);
    auto *plugin = qobject_cast<TrivexPluginInterface *>(sameLibrary.instance());
    QVERIFY(plugin);
    QVector<HostMessage> messages;
    const auto record = [&messages](const HostMessage &message) { messages.append(message); };
    connect(&host.plugin(), &PluginHost::sent, this, record);
    connect(&host.plugin(), &PluginHost::received, this, record);
    const auto count = [&messages](const char *event) {
        return std::count_if(messages.cbegin(), messages.cend(),
                             [event](const HostMessage &message) { return message.event == event; });
    };

    HostWindow window(host, documents);
    window.start();
    window.openGarage();
    QWidget *garage = window.tabs().currentWidget();
    auto *table = garage->findChild<QTreeView *>("tvMaintainanceTable");
    QTRY_VERIFY(table->model()->rowCount() > 0);
    Acceptor acceptor;

    // The host's buttons and the remote side.
    for (const EventExample &example : eventExamples())
        host.plugin().send(example.event, QJsonDocument::fromJson(example.data.toUtf8()).object());
    QTRY_VERIFY(count("remote_service_move_to_archive") > 0);

    // The mechanic: cars, a service, the log, the settings.
    garage->findChild<QTreeView *>("tvAvailableCars")->selectAll();
    garage->findChild<QPushButton *>("pbRemoveAvailable")->click();
    QVERIFY(
        QMetaObject::invokeMethod(garage, "serviceClicked", Q_ARG(QModelIndex, table->model()->index(0, 3))));
    auto *log = garage->findChild<QTreeView *>("tvServiceLog");
    QTRY_VERIFY(log->model()->rowCount() > 1);
    log->setCurrentIndex(log->model()->index(1, 0));
    garage->findChild<QAction *>("actionDoneOperation")->trigger();
    QTRY_VERIFY(count("add_remote_service") >= 2);
    QTRY_VERIFY(log->model()->rowCount() > 0);
    log->setCurrentIndex(log->model()->index(0, 0));
    garage->findChild<QAction *>("actionDeleteMaintainanceItem")->trigger();
    QTRY_VERIFY(count("remote_service_delete") > 0);

    window.openSettings();
    QWidget *settings = plugin->settingsPage();
    QAbstractItemModel *operations = settings->findChild<QTreeView *>("tvServiceOperations")->model();
    QVERIFY(operations->setData(operations->index(0, 1), "Осмотр"));
    window.closeSettings();
    garage->findChild<QPushButton *>("pbCloseGarage")->click();
    QTRY_VERIFY(count("close_tab") > 0);

    QStringList required;
    for (const EventExample &example : eventExamples())
        required.append(example.event);
    required += plugin->emittedEvents() + plugin->subscribedEvents();
    const Verdict verdict = checkMessages(messages, required);
    QVERIFY2(verdict.exitCode == 0, qPrintable(verdict.output));
}

GARAGE_TEST(TestProtocolSchemas)
#include "tst_protocolschemas.moc"

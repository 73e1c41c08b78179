// One of several programs on one database file. It works until it is killed or its standard input ends, and
// prints on standard output, a line each, what it knows to be done:
//   module FILE FIRST [deleting]   the finished library, in a host that lets it write; remote ids from FIRST
//   laps FILE                      a timing system that records laps
//   reader FILE                    looks whether batches are ever seen in part

#include "support/loadedplugin.h"
#include "support/testdatabase.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QJsonDocument>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTimer>
#include <QTreeView>

#include <cstdio>

namespace {

constexpr int batchSize = 5;

void say(const QString &line)
{
    std::fputs(qPrintable(line + '\n'), stdout);
    std::fflush(stdout);
}

void discardDebugLines(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const bool isNoise = message.contains("propagateSizeHints"); // the offscreen platform's
    if (type != QtDebugMsg && !isNoise)
        std::fputs(qPrintable(message + '\n'), stderr);
}

class BusyModule final : public QObject
{
public:
    BusyModule(int firstId, bool isDeleting) : m_nextId(firstId), m_isDeleting(isDeleting)
    {
        connect(m_host.plugin(), &TrivexPluginInterface::pluginSignal, this,
                [this](const QString &, const QString &event, const QJsonObject &data) {
                    printMessage(event, data);
                });
        m_host.window()->show();
        connect(&m_dialogTimer, &QTimer::timeout, this, [this] { answerDialog(); });
        m_dialogTimer.start(5);
    }

private:
    void printMessage(const QString &event, const QJsonObject &data)
    {
        if (event == "remote_service_move_to_archive") {
            for (const QJsonValue &id : data.value("idList").toArray())
                say(QString("archived %1").arg(id.toInt()));
            QTimer::singleShot(0, this, [this] { act(); });
        } else if (event == "add_remote_service") {
            say("service " + data.value("comment").toString());
        } else if (event == "remote_service_delete") {
            say(QString("deleted %1").arg(data.value("remoteId").toInt()));
        } else if (event == "update_pending_service" && !m_started) {
            m_started = true;
            QTimer::singleShot(0, this, [this] { act(); });
        }
    }

    /// Sends a batch each time, whose answer starts the next action; sometimes a service or a deletion.
    void act()
    {
        m_host.takeMessages();
        if (m_nextId % 2 == 0)
            click("tvMaintainanceTable");
        if (m_isDeleting && m_nextId % 3 == 0)
            removeARemoteRecord();
        sendBatch();
    }

    void sendBatch()
    {
        QJsonArray records;
        const int batch = m_nextId;
        for (int i = 0; i < batchSize; ++i) {
            records.append(QJsonObject {{"id", m_nextId++},
                                        {"carId", 1 + i % 3},
                                        {"opId", 1},
                                        {"opDoneDateTime", "2026-03-08T09:30:00Z"},
                                        {"comment", QString("batch %1").arg(batch)}});
        }
        m_host.send("remote_service_data", {{"data", QString(QJsonDocument(records).toJson())}});
    }

    QTreeView *view(const char *name) { return m_window->findChild<QTreeView *>(name); }

    void click(const char *name)
    {
        const QModelIndex cell = view(name)->model()->index(0, 3);
        QMetaObject::invokeMethod(view(name), "serviceButtonClicked", Q_ARG(QModelIndex, cell));
    }

    void removeARemoteRecord()
    {
        QTreeView *log = view("tvServiceLog");
        const QAbstractItemModel *model = log->model();
        for (int row = 0; row < model->rowCount(); ++row) {
            for (int column = 0; column < model->columnCount(); ++column) {
                if (!model->index(row, column).data().toString().startsWith("batch"))
                    continue;
                log->setCurrentIndex(model->index(row, column));
                say("deleting");
                m_window->findChild<QAction *>("actionDeleteMaintainanceItem")->trigger();
                return;
            }
        }
    }

    void answerDialog()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        if (auto *question = qobject_cast<QMessageBox *>(dialog)) {
            question->button(QMessageBox::Yes)->click();
            return;
        }
        auto *comment = dialog->findChild<QPlainTextEdit *>();
        comment->setPlainText(QString("%1").arg(m_nextId));
        dialog->accept();
    }

    LoadedPlugin m_host;
    QWidget *const m_window = m_host.window();
    QTimer m_dialogTimer;
    int m_nextId;
    const bool m_isDeleting;
    bool m_started = false;
};

class LapRecorder final : public QObject
{
public:
    explicit LapRecorder(const QString &path) : m_database(path, false)
    {
        connect(&m_timer, &QTimer::timeout, this, [this] { record(); });
        m_timer.start(10);
    }

private:
    /// A timing system must not lose a lap on a busy database.
    void record()
    {
        while (!m_database.tryExec("BEGIN IMMEDIATE")) { }
        for (int car = 1; car <= 3; ++car)
            m_database.addLap(car, 1, "2026-04-01T10:00:00.000Z", 40000);
        while (!m_database.tryExec("COMMIT")) { }
        say("laps 3");
    }

    const TestDatabase m_database;
    QTimer m_timer;
};

class Reader final : public QObject
{
public:
    explicit Reader(const QString &path) : m_database(path, false)
    {
        connect(&m_timer, &QTimer::timeout, this, [this] { read(); });
        m_timer.start(5);
    }

private:
    /// Busy writers can keep a reader out for longer than one attempt lasts.
    void read()
    {
        m_database.exec("BEGIN");
        while (!m_database.tryExec("SELECT count(*) FROM cars")) { }
        const int torn = m_database
                             .value("SELECT count(*) FROM (SELECT 1 FROM maintainance WHERE comment "
                                    "LIKE 'batch %' GROUP BY comment HAVING count(*)<>?)",
                                    {batchSize})
                             .toInt();
        m_database.exec("COMMIT");
        say(torn == 0 ? "whole" : "torn");
    }

    const TestDatabase m_database;
    QTimer m_timer;
};

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(discardDebugLines);
    QApplication application(argc, argv);
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);

    const QStringList arguments = QCoreApplication::arguments();
    const QString path = arguments.value(2);
    std::unique_ptr<QObject> worker;
    if (arguments.value(1) == "laps")
        worker = std::make_unique<LapRecorder>(path);
    else if (arguments.value(1) == "reader")
        worker = std::make_unique<Reader>(path);
    else
        worker = std::make_unique<BusyModule>(arguments.value(3).toInt(), arguments.value(4) == "deleting");
    return QCoreApplication::exec();
}

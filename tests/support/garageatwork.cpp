#include "support/garageatwork.h"

#include "support/userinput.h"

#include <QAction>
#include <QApplication>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QtTest>

namespace {

constexpr int cars = 3;
constexpr int batchSize = 4;

QByteArray listed(const QJsonArray &operations)
{
    QMap<int, QString> names;
    for (const QJsonValue &operation : operations) {
        const int id = operation["id"].toInt();
        if (id != -1) // not stored
            names.insert(id, operation["opName"].toString());
    }
    QByteArray list;
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        list += QByteArray::number(name.key()) + ':' + name.value().toUtf8() + ';';
    return list;
}

/// Of a row of the service log; empty for a complaint.
QByteArray commentOf(const QAbstractItemModel &log, int row)
{
    for (int column = 0; column < log.columnCount(); ++column) {
        const QByteArray text = log.index(row, column).data().toString().toLatin1();
        if (text.startsWith("remote") || text.startsWith("service"))
            return text;
    }
    return {};
}

} // namespace

GarageAtWork::GarageAtWork(const TestDatabase &database, quint32 seed, NoteTaker note)
    : m_database(database)
    , m_random(seed)
    , m_note(std::move(note))
    , m_window(*m_host.window())
    , m_page(*m_host.settingsPage())
{
    connect(m_host.plugin(), &TrivexPluginInterface::pluginSignal, this,
            [this](const QString &module, const QString &event, const QJsonObject &data) {
                handleMessage({module, event, data});
            });
    connect(&m_dialogTimer, &QTimer::timeout, this, [this] { answerDialog(); });
    m_dialogTimer.start(1);
    ++m_reloadsAsked;
    m_host.showWindow();
    m_page.show();
}

void GarageAtWork::prepare(const TestDatabase &database)
{
    for (int id = 1; id <= cars; ++id)
        database.addCar(id, QString::number(id), "Sodi");
    database.addOperation(1, "Oil");
    database.addOperation(2, "Chain");
    database.addLimit("Sodi", 1, 36000, 10, 10);
}

void GarageAtWork::act()
{
    switch (below(13)) {
    case 0:
    case 1:
        sendBatch(false);
        break;
    case 2:
        sendBatch(true);
        break;
    case 3:
    case 4:
        recordService();
        break;
    case 5:
        complain();
        break;
    case 6:
        deleteRecord();
        break;
    case 7:
        switchAvailability();
        break;
    case 8:
        renameOperation();
        break;
    case 9:
        if (below(2) == 0)
            addOperation();
        else
            removeOperation();
        break;
    case 10:
        enterLimit();
        break;
    default:
        recordLaps();
        break;
    }
    QCoreApplication::processEvents();
    m_host.takeMessages();
}

bool GarageAtWork::settle()
{
    const bool isSettled = QTest::qWaitFor([this] { return m_reloads >= m_reloadsAsked; }, 60000);
    QCoreApplication::processEvents(); // the records follow the message
    return isSettled && QTest::qWaitFor([this] { return m_deleting.isEmpty(); }, 60000);
}

void GarageAtWork::end()
{
    settle();
    m_dialogTimer.stop();
    m_host.unload();
}

QSet<QByteArray> GarageAtWork::shownComments() const
{
    const QAbstractItemModel &log = *child<QTreeView>(m_window, "tvServiceLog")->model();
    QSet<QByteArray> comments;
    for (int row = 0; row < log.rowCount(); ++row)
        comments.insert(commentOf(log, row));
    return comments;
}

void GarageAtWork::handleMessage(const HostMessage &message)
{
    if (message.event == "update_pending_service") {
        ++m_reloads;
        return;
    }
    if (message.event == "add_remote_service") {
        note("service", message.data["comment"].toString().toUtf8());
    } else if (message.event == "remote_service_delete") {
        note("deleted", m_deleting.take(message.data["localId"].toInt()));
    } else if (message.event == "service_ops_changed") {
        note("operations", listed(message.data["opsList"].toArray()));
    } else if (message.event == "remote_service_move_to_archive") {
        QByteArray comments;
        for (const QJsonValue &id : message.data["idList"].toArray()) {
            comments += m_remote.value(id.toInt()) + ' ';
            m_unarchived.remove(id.toInt());
        }
        note("archived", comments.trimmed());
    }
}

void GarageAtWork::note(const QByteArray &verb, const QByteArray &subject)
{
    ++m_announcements;
    m_note(verb + ' ' + subject);
}

void GarageAtWork::answerDialog()
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (!dialog || !dialog->isVisible())
        return;
    if (qobject_cast<QMessageBox *>(dialog)) {
        press(*dialog, QDialogButtonBox::Yes);
        return;
    }
    if (auto *comment = dialog->findChild<QPlainTextEdit *>()) {
        enterText(comment, QString::fromLatin1(m_commentToEnter));
    } else {
        // The same number each, so that a row that was stored in part can be told.
        const QString limit = QString::number(1 + below(99));
        for (QLineEdit *edit : dialog->findChildren<QLineEdit *>())
            enterText(edit, limit);
    }
    press(*dialog, QDialogButtonBox::Ok);
}

QByteArray GarageAtWork::newComment(const char *prefix)
{
    return prefix + QByteArray::number(m_nextComment++);
}

void GarageAtWork::sendBatch(bool sendsAgain)
{
    if (sendsAgain && (m_nextId <= batchSize || !settle()))
        return;
    const int first = sendsAgain ? 1 + batchSize * below((m_nextId - 1) / batchSize) : m_nextId;
    m_nextId = qMax(m_nextId, first + batchSize);
    QList<int> ids;
    for (int id = first; id < first + batchSize; ++id)
        ids.append(id);
    sendBatch(ids);
}

void GarageAtWork::sendUnarchived()
{
    if (!m_unarchived.isEmpty() && settle())
        sendBatch(m_unarchived.values());
}

/// Records that come again have a new comment.
void GarageAtWork::sendBatch(const QList<int> &ids)
{
    QJsonArray records;
    QByteArray comments;
    for (int id : ids) {
        if (m_remote.contains(id))
            m_note("changing " + m_remote.value(id));
        m_remote.insert(id, newComment("remote"));
        m_unarchived.insert(id);
        comments += ' ' + m_remote.value(id);
        records.append(QJsonObject {{"id", id},
                                    {"carId", 1 + id % cars},
                                    {"opId", 1},
                                    {"opDoneDateTime", "2026-03-08T09:30:00Z"},
                                    {"comment", QString::fromLatin1(m_remote.value(id))}});
    }
    m_note("batch" + comments);
    ++m_reloadsAsked;
    const QString text = QJsonDocument(records).toJson();
    if (below(2) == 0)
        m_host.send("remote_service_data", {{"data", text}});
    else
        m_host.send("remote_control_data", {{"msg", "service_operation_done"}, {"data", text}});
}

void GarageAtWork::recordService()
{
    QTreeView *table = viewInFront(m_window, "tvMaintainanceTable");
    if (table->model()->rowCount() == 0 || table->model()->columnCount() < 4)
        return;
    click(table, table->model()->index(below(table->model()->rowCount()), 3));
    m_commentToEnter = newComment("service");
    ++m_reloadsAsked;
    QTest::keyClick(table, Qt::Key_Return);
}

void GarageAtWork::complain()
{
    const int car = 1 + below(cars);
    if (!settle() || viewInFront(m_window, "tvMaintainanceTable")->model()->rowCount() < cars)
        return;
    m_commentToEnter = newComment("complaint");
    ++m_reloadsAsked;
    m_host.send("car_complain", {{"carId", car}});
}

void GarageAtWork::deleteRecord()
{
    if (!settle())
        return;
    QTreeView *log = viewInFront(m_window, "tvServiceLog");
    if (log->model()->rowCount() == 0)
        return;
    const int row = below(log->model()->rowCount());
    const QByteArray comment = commentOf(*log->model(), row);
    const QVariant id = m_database.value("SELECT id FROM maintainance WHERE comment=?", {QString(comment)});
    if (!id.isValid())
        return;
    click(log, log->model()->index(row, 1));
    m_note("changing " + comment);
    m_deleting.insert(id.toInt(), comment);
    ++m_reloadsAsked;
    child<QAction>(m_window, "actionDeleteMaintainanceItem")->trigger();
}

void GarageAtWork::switchAvailability()
{
    const QJsonObject request {{"msg", "switchCarAvailability"},
                               {"data", QJsonObject {{"carId", 1 + below(cars)}}}};
    m_host.send("remote_control_data", request);
    QJsonArray list;
    for (int id = 1; id <= cars; ++id)
        list.append(QJsonObject {{"id", id},
                                 {"num", QString::number(id)},
                                 {"name", "Sodi"},
                                 {"available_for_runs", below(2) == 0}});
    m_host.send("cars_list_changed", {{"cars", list}, {"noStatsUpdate", true}});
}

void GarageAtWork::renameOperation()
{
    QTreeView *operations = viewInFront(m_page, "tvServiceOperations");
    if (operations->model()->rowCount() == 0)
        return;
    doubleClick(operations, operations->model()->index(below(operations->model()->rowCount()), 1));
    enterIntoEditor(*operations, newComment("Work"));
}

void GarageAtWork::addOperation()
{
    QTreeView *operations = viewInFront(m_page, "tvServiceOperations");
    if (operations->model()->rowCount() > 4)
        return;
    child<QAction>(m_page, "actionAddOperation")->trigger();
    enterIntoEditor(*operations, newComment("Work"));
}

void GarageAtWork::removeOperation()
{
    QTreeView *operations = viewInFront(m_page, "tvServiceOperations");
    if (operations->model()->rowCount() < 3)
        return;
    click(operations, operations->model()->index(operations->model()->rowCount() - 1, 1));
    child<QAction>(m_page, "actionRemoveOperation")->trigger();
}

void GarageAtWork::enterLimit()
{
    QTreeView *schedule = viewInFront(m_page, "tvServiceReglament");
    if (schedule->model()->rowCount() > 0 && schedule->model()->columnCount() > 2)
        doubleClick(schedule, schedule->model()->index(0, 2));
}

/// As a host that goes on when its disk is full.
void GarageAtWork::recordLaps()
{
    if (!m_database.tryExec("BEGIN IMMEDIATE"))
        return;
    bool isStored = true;
    for (int car = 1; car <= cars && isStored; ++car) {
        isStored = m_database.tryExec(QString("INSERT INTO laps (car_id,run_id,lap_timestamp,sum_sectors) "
                                              "VALUES (%1,%2,'2026-04-01T10:00:00.000Z',40000)")
                                          .arg(car)
                                          .arg(m_nextRun));
    }
    if (isStored && m_database.tryExec("COMMIT"))
        note("laps", QByteArray::number(m_nextRun));
    else
        m_database.tryExec("ROLLBACK");
    ++m_nextRun;
    ++m_reloadsAsked;
    m_host.send("run_saved_to_db");
}

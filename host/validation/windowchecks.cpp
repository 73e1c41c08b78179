#include "host/plugin/garagewidgets.h"
#include "host/validation/checkcontext.h"
#include "host/validation/dialogresponder.h"

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QTreeView>

// Actions of a mechanic in the garage window: the messages to the host, the rows in the database.
namespace {

const QString serviceLog = QStringLiteral("maintainance");
const QString pending = QStringLiteral("update_pending_service");

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(WindowChecks)
};

template<class Kind> Kind &named(QWidget &window, const char *name)
{
    auto *object = window.findChild<Kind *>(QLatin1String(name));
    if (!object)
        throw CheckSkipped {Text::tr("the window has no \"%1\"").arg(QLatin1String(name))};
    return *object;
}

/// The window as the host shows it, filled by its first reload.
QWidget &openWindow(CheckContext &context)
{
    context.makeDatabase();
    context.load();
    QWidget &window = context.garageWindow();
    window.resize(1200, 700);
    window.show();
    context.await(pending);
    context.expectSilence(200);
    return window;
}

void sendComplaint(CheckContext &context, int carId, bool confirmed)
{
    const DialogResponder responder(confirmed);
    context.send(QStringLiteral("car_complain"), {{QStringLiteral("carId"), carId}});
    expect(responder.hasResponded(), Text::tr("no dialog opened for car %1").arg(carId));
}

void checkComplaint(CheckContext &context)
{
    openWindow(context);
    sendComplaint(context, 1, false);
    context.expectSilence();
    expectEqual(Text::tr("the number of records after a cancelled complaint"), context.count(serviceLog), 3);
    sendComplaint(context, 1, true);
    context.await(pending);
    expectEqual(
        Text::tr("the number of open complaints about car 1"),
        context.count(serviceLog, QStringLiteral("car_id=1 AND operation_id=-1 AND operation_state=0")), 1);
    sendComplaint(context, 2, true);
    context.await(pending);
    expectEqual(Text::tr("the number of records after the open complaint was amended"),
                context.count(serviceLog), 4);
}

void checkAvailabilityButtons(CheckContext &context)
{
    QWidget &window = openWindow(context);
    context.send(QStringLiteral("cars_list_changed"), jsonObject(R"({"noStatsUpdate": true, "cars": [
        {"id": 1, "num": "7", "name": "Вихрь", "available_for_runs": true}]})"));
    named<QTreeView>(window, GarageWidgets::availableCarsView).selectAll();
    named<QPushButton>(window, GarageWidgets::removeAvailableButton).click();
    QJsonObject expected = jsonObject(R"({"carsIdsList": [1], "command": "set_availability", "available": 0,
                                          "requestSrc": "ui"})");
    expectMessage(context.await(QStringLiteral("update_cars")), QStringLiteral("garage_plugin"), expected);
    expected.insert(QStringLiteral("req_answ"),
                    jsonObject(R"({"carAvailable": false, "carsIdsList": [1], "status": "ok"})"));
    expected.insert(QStringLiteral("sinkId"), -1);
    expectMessage(context.await(QStringLiteral("remote_control_answer")), QStringLiteral("garage_plugin"),
                  expected);
}

/// The pointer over a cell, a press of the button that appears.
void pressCellButton(QTreeView &table)
{
    const QModelIndex lastCell = table.model()->index(0, table.model()->columnCount() - 1);
    table.scrollTo(lastCell);
    const QPoint cell = table.visualRect(lastCell).center();
    QMouseEvent move(QEvent::MouseMove, cell, table.viewport()->mapToGlobal(cell), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(table.viewport(), &move);
    for (QPushButton *button : table.viewport()->findChildren<QPushButton *>()) {
        if (button->isVisibleTo(table.viewport())) {
            button->click();
            return;
        }
    }
    throw CheckFailed {Text::tr("no button appears over a cell of the maintenance table")};
}

void checkServiceDone(CheckContext &context)
{
    QWidget &window = openWindow(context);
    const DialogResponder responder(true);
    pressCellButton(named<QTreeView>(window, GarageWidgets::maintenanceView));
    expect(responder.hasResponded(), Text::tr("the service button opens no dialog"));
    const HostMessage added = context.await(QStringLiteral("add_remote_service"));
    expectEqual(Text::tr("the keys of \"add_remote_service\""), QJsonArray::fromStringList(added.data.keys()),
                QJsonArray::fromStringList({QStringLiteral("carId"), QStringLiteral("comment"),
                                            QStringLiteral("opId"), QStringLiteral("opName"),
                                            QStringLiteral("opTime"), QStringLiteral("pId"),
                                            QStringLiteral("pName")}));
    context.await(pending);
    expectEqual(Text::tr("the number of new done records"),
                context.count(serviceLog,
                              QStringLiteral("id>3 AND operation_state=1 AND car_id=%1 AND operation_id=%2")
                                  .arg(added.data.value(QLatin1String("carId")).toInt())
                                  .arg(added.data.value(QLatin1String("opId")).toInt())),
                1);
}

void checkDeletion(CheckContext &context)
{
    QWidget &window = openWindow(context);
    auto &log = named<QTreeView>(window, GarageWidgets::serviceLogView);
    log.setCurrentIndex(log.model()->index(0, 1)); // the latest record: the complaint
    const DialogResponder responder(true);
    named<QAction>(window, GarageWidgets::deleteAction).trigger();
    expect(responder.hasResponded(), Text::tr("no confirmation dialog opens"));
    expectMessage(context.await(QStringLiteral("remote_service_delete")),
                  QStringLiteral("garage_stats_updater"), jsonObject(R"({"localId": 3, "remoteId": -1})"));
    context.await(pending);
    expectEqual(Text::tr("the number of records with the deleted id"),
                context.count(serviceLog, QStringLiteral("id=3")), 0);
    expectEqual(Text::tr("the number of records left"), context.count(serviceLog), 2);
}

} // namespace

QVector<Check> windowChecks()
{
    return {
        {QStringLiteral("complaint"),
         Text::tr("\"car_complain\" opens the complaint dialog; a car has one open complaint"),
         checkComplaint},
        {QStringLiteral("availability-buttons"),
         Text::tr("the availability buttons notify the host and the remote controls"),
         checkAvailabilityButtons},
        {QStringLiteral("service-done"), Text::tr("a service recorded in the window is stored and announced"),
         checkServiceDone},
        {QStringLiteral("deletion"), Text::tr("a record deleted in the window is deleted and announced"),
         checkDeletion},
    };
}

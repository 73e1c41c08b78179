#include "host/sessions/screenshottour.h"

#include "host/app/demohost.h"
#include "host/app/hostsettingsdialog.h"
#include "host/app/hostwindow.h"
#include "host/plugin/garagewidgets.h"
#include "host/sessions/simulatedmouse.h"
#include "host/terminal/exitcode.h"

#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QTreeView>

#include <iterator>

namespace {

enum HostTab { TrackTab, FleetTab, RemoteTab, MessagesTab, HostTabs };
constexpr const char *hostTabNames[] = {"track", "fleet", "remote", "messages"};
static_assert(std::size(hostTabNames) == HostTabs, "one name per tab");
constexpr int workDone = 4;
const QSize usualWindowSize(1500, 900);
constexpr int simulatedMilliseconds = 20 * 60 * 1000; // two runs and a part of the third
constexpr int savingMilliseconds = 3000; // the recorder's thread writes the laps
constexpr int dialogMilliseconds = 500;
enum GarageTab { MaintenanceTab = 1, ServiceLogTab = 2 };
constexpr int numberColumn = 2;
constexpr int firstOperationColumn = 3;

/// Selects the latest message, so that the picture shows its data.
void showLatestMessage(const QWidget &window)
{
    auto *table = window.findChild<QTableView *>(QStringLiteral("messageLogTable"));
    table->selectRow(table->model()->rowCount() - 1);
}

/// Closes the plug-in's open menu or modal dialog.
void closeDialog()
{
    if (QWidget *menu = QApplication::activePopupWidget())
        menu->close();
    else if (QWidget *dialog = QApplication::activeModalWidget())
        dialog->close();
}

/// Opening a dialog or menu blocks its caller, so it is opened from the event loop.
template<typename Open> void openLater(QObject *context, Open open)
{
    QTimer::singleShot(0, context, open);
}

} // namespace

ScreenshotTour::ScreenshotTour(DemoHost &host, HostWindow &window, const QString &folder,
                               const QSize &windowSize, bool mayWrite, QObject *parent)
    : QObject(parent)
    , m_host(host)
    , m_window(window)
    , m_folder(folder)
    , m_windowSize(windowSize.isEmpty() ? usualWindowSize : windowSize)
    , m_mayWrite(mayWrite)
    , m_watcher(host.plugin())
{
    connect(&m_watcher, &AnswerWatcher::finished, this, &ScreenshotTour::saveScreenshot);
}

void ScreenshotTour::start()
{
    m_window.resize(m_windowSize);
    m_window.openGarage();
    // openGarage() makes the plug-in insert its window, which these stops need.
    addPluginStops();
    addSettingsStops();
    addHostStops();
    visit();
}

void ScreenshotTour::addHostStops()
{
    m_stops.append({QLatin1String(hostTabNames[TrackTab]),
                    [this] {
                        closeDialog();
                        m_window.closeSettings();
                        showHostTab(TrackTab);
                        if (m_mayWrite)
                            m_host.track().simulate(simulatedMilliseconds);
                    },
                    savingMilliseconds});
    for (int tab = TrackTab + 1; tab < HostTabs; ++tab) {
        m_stops.append({QLatin1String(hostTabNames[tab]), [this, tab] {
                            if (tab == RemoteTab && m_mayWrite)
                                doSomeWork();
                            showHostTab(tab);
                            showLatestMessage(m_window);
                        }});
    }
}

void ScreenshotTour::showHostTab(int tab)
{
    QTabWidget &tabs = m_window.tabs();
    tabs.setCurrentIndex(tabs.count() - HostTabs + tab);
}

void ScreenshotTour::doSomeWork()
{
    const QVector<PendingService> pending = m_host.remote().pending();
    const QVector<HostPerson> people = m_host.fleet().people().list();
    for (int number = 0; number < std::min(workDone, int(pending.size())); ++number) {
        const PendingService &work = pending.at(number);
        const QString text = m_host.remote().storedText(work);
        m_host.remote().complete(work, people.value(number), text.isEmpty() ? tr("done on request") : text,
                                 RemoteSide::Channel::Service);
    }
}

/// One stop for each tab that the plug-in's window has.
void ScreenshotTour::addPluginStops()
{
    QWidget *garage = m_window.tabs().currentWidget();
    QTabWidget *inner = garage ? garage->findChild<QTabWidget *>() : nullptr;
    if (!inner) {
        m_stops.append({QStringLiteral("garage"), [] {}});
        return;
    }
    for (int tab = 0; tab < inner->count(); ++tab)
        m_stops.append(
            {QStringLiteral("garage-%1").arg(tab + 1), [inner, tab] { inner->setCurrentIndex(tab); }});
    if (auto *table = garage->findChild<QTreeView *>(QLatin1String(GarageWidgets::maintenanceView)))
        addMaintenanceStops(*inner, *table);
    addComplaintStop();
    if (auto *log = garage->findChild<QTreeView *>(QLatin1String(GarageWidgets::serviceLogView)))
        addServiceLogStops(*inner, *log);
}

void ScreenshotTour::addMaintenanceStops(QTabWidget &tabs, QTreeView &table)
{
    const auto closeUp = [this, &table] { return topLeftOf(table, {860, 230}); };
    const auto cell = [&table](int column) { return table.model()->index(1, column); };

    m_stops.append({QStringLiteral("colours"), [&tabs] { tabs.setCurrentIndex(MaintenanceTab); },
                    dialogMilliseconds, closeUp});
    m_stops.append({QStringLiteral("service-button"),
                    [&table, cell] { SimulatedMouse::moveTo(table, cell(firstOperationColumn)); },
                    dialogMilliseconds, closeUp});
    m_stops.append({QStringLiteral("attention-button"),
                    [&table, cell] { SimulatedMouse::moveTo(table, cell(numberColumn)); }, dialogMilliseconds,
                    closeUp});
    m_stops.append({QStringLiteral("service-dialog"),
                    [this, &table, cell] {
                        openLater(this, [&table, cell] {
                            if (auto *button = SimulatedMouse::moveTo(table, cell(firstOperationColumn)))
                                button->click();
                        });
                    },
                    dialogMilliseconds});
}

void ScreenshotTour::addComplaintStop()
{
    m_stops.append({QStringLiteral("complaint-dialog"),
                    [this] {
                        closeDialog();
                        openLater(this, [this] { openComplaintDialog(); });
                    },
                    dialogMilliseconds});
}

void ScreenshotTour::addServiceLogStops(QTabWidget &tabs, QTreeView &log)
{
    m_stops.append({QStringLiteral("service-log-menu"),
                    [this, &tabs, &log] {
                        closeDialog();
                        tabs.setCurrentIndex(ServiceLogTab);
                        openLater(this, [&log] {
                            SimulatedMouse::openContextMenu(log, log.model()->index(1, numberColumn));
                        });
                    },
                    dialogMilliseconds,
                    [this, &log] {
                        return topLeftOf(log, {860, 230});
                    }});
    const auto trigger = [this, &log](const char *action) {
        closeDialog();
        if (auto *found = log.window()->findChild<QAction *>(QLatin1String(action)))
            openLater(this, [found] { found->trigger(); });
    };
    m_stops.append({QStringLiteral("done-dialog"), [trigger] { trigger(GarageWidgets::doneAction); },
                    dialogMilliseconds});
    m_stops.append({QStringLiteral("delete-question"), [trigger] { trigger(GarageWidgets::deleteAction); },
                    dialogMilliseconds});
}

void ScreenshotTour::addSettingsStops()
{
    m_stops.append({QStringLiteral("settings"), [this] {
                        closeDialog();
                        m_window.openSettings();
                    }});
    m_stops.append({QStringLiteral("settings-menu"),
                    [this] { openLater(this, [this] { openSettingsMenu(); }); }, dialogMilliseconds});
    m_stops.append({QStringLiteral("limits-dialog"),
                    [this] {
                        closeDialog();
                        openLater(this, [this] { openLimitsDialog(); });
                    },
                    dialogMilliseconds});
}

void ScreenshotTour::openSettingsMenu()
{
    if (auto *operations = m_window.findChild<QTreeView *>(QLatin1String(GarageWidgets::operationsView)))
        SimulatedMouse::openContextMenu(*operations, operations->model()->index(1, 1));
}

void ScreenshotTour::openLimitsDialog()
{
    if (auto *schedule = m_window.findChild<QTreeView *>(QLatin1String(GarageWidgets::scheduleView)))
        SimulatedMouse::doubleClick(*schedule, schedule->model()->index(0, firstOperationColumn));
}

/// In the window's coordinates, the titles of the columns included.
QRect ScreenshotTour::topLeftOf(QWidget &view, const QSize &size) const
{
    return QRect(view.mapTo(&m_window, QPoint(0, 0)), size.boundedTo(view.size()));
}

void ScreenshotTour::openComplaintDialog()
{
    const QVector<HostCar> cars = m_host.fleet().cars().list();
    if (!cars.isEmpty())
        m_host.plugin().send(QStringLiteral("car_complain"), {{QStringLiteral("carId"), cars.value(1).id}});
}

void ScreenshotTour::visit()
{
    if (m_position >= m_stops.size()) {
        emit finished(ExitCode::Ok, QString());
        return;
    }
    const Stop &stop = m_stops.at(m_position);
    stop.go();
    if (stop.delay > 0)
        QTimer::singleShot(stop.delay, this, [this] { saveScreenshot(true); });
    else
        m_watcher.finishWhenIdle();
}

void ScreenshotTour::saveScreenshot(bool allAnswered)
{
    const QString name =
        QStringLiteral("%1-%2").arg(m_position + 1, 2, 10, QLatin1Char('0')).arg(m_stops.at(m_position).name);
    if (!allAnswered) {
        emit finished(ExitCode::NoAnswer, tr("the plug-in did not answer"));
        return;
    }
    const Stop &stop = m_stops.at(m_position);
    const QRect part = stop.part ? stop.part() : QRect();
    if (const Result result = m_window.saveScreenshot(m_folder, name, part); !result) {
        emit finished(ExitCode::NoPicture, result.errorText());
        return;
    }
    ++m_position;
    visit();
}

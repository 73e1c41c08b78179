#include "host/sessions/screenshottour.h"

#include "host/app/demohost.h"
#include "host/app/hostsettingsdialog.h"
#include "host/app/hostwindow.h"
#include "host/sessions/screenshot.h"
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

enum HostTab { TrackTab, FleetTab, RemoteTab, JournalTab, HostTabs };
constexpr const char *hostTabNames[] = {"track", "fleet", "remote", "journal"};
static_assert(std::size(hostTabNames) == HostTabs, "one name per tab");
constexpr int workDone = 4;
const QSize photographed(1500, 900);
constexpr int liveMilliseconds = 4000;
constexpr int liveSpeed = 300;
constexpr int dialogMilliseconds = 500;
enum GarageTab { MaintenanceTab = 1, ServiceLogTab = 2 };
constexpr int numberColumn = 2;
constexpr int firstOperationColumn = 3;

/// So that the picture shows a message beside the journal.
void showLatestMessage(const QWidget &window)
{
    auto *table = window.findChild<QTableView *>(QStringLiteral("journalTable"));
    table->selectRow(table->model()->rowCount() - 1);
}

/// The plug-in asks in dialogs and menus of its own; the next stop waits behind them.
void closeDialog()
{
    if (QWidget *menu = QApplication::activePopupWidget())
        menu->close();
    else if (QWidget *dialog = QApplication::activeModalWidget())
        dialog->close();
}

/// Dialogs and menus keep their caller waiting, so they are asked for from the event loop.
template<typename Ask> void askLater(QObject *context, Ask ask)
{
    QTimer::singleShot(0, context, ask);
}

} // namespace

ScreenshotTour::ScreenshotTour(DemoHost &host, HostWindow &window, const QString &folder, bool mayWrite,
                               QObject *parent)
    : QObject(parent)
    , m_host(host)
    , m_window(window)
    , m_folder(folder)
    , m_mayWrite(mayWrite)
    , m_watch(host.plugin())
{
    connect(&m_watch, &AnswerWatch::finished, this, &ScreenshotTour::photograph);
}

void ScreenshotTour::start()
{
    m_window.resize(photographed);
    m_window.openGarage();
    // The plug-in's window is known from here on.
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
                        m_host.track().setSpeed(liveSpeed);
                        m_host.track().setLive(m_mayWrite);
                    },
                    liveMilliseconds});
    for (int tab = TrackTab + 1; tab < HostTabs; ++tab) {
        m_stops.append({QLatin1String(hostTabNames[tab]), [this, tab] {
                            m_host.track().setLive(false);
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
    const QVector<FleetPerson> people = m_host.fleet().fleet().people();
    for (int number = 0; number < std::min(workDone, pending.size()); ++number)
        m_host.remote().complete(pending.at(number), people.value(number), tr("сделано по заявке"),
                                 RemoteSide::Channel::Service);
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
    if (auto *table = garage->findChild<QTreeView *>(QStringLiteral("tvMaintainanceTable")))
        addMaintenanceStops(*inner, *table);
    addComplaintStop();
    if (auto *journal = garage->findChild<QTreeView *>(QStringLiteral("tvServiceLog")))
        addJournalStops(*inner, *journal);
}

void ScreenshotTour::addMaintenanceStops(QTabWidget &tabs, QTreeView &table)
{
    const auto closeUp = [this, &table] { return topLeftOf(table, {860, 230}); };
    const auto cell = [&table](int column) { return table.model()->index(1, column); };

    m_stops.append({QStringLiteral("colours"), [&tabs] { tabs.setCurrentIndex(MaintenanceTab); },
                    dialogMilliseconds, closeUp});
    m_stops.append({QStringLiteral("service-button"),
                    [&table, cell] { ViewPointer::moveOver(table, cell(firstOperationColumn)); },
                    dialogMilliseconds, closeUp});
    m_stops.append({QStringLiteral("attention-button"),
                    [&table, cell] { ViewPointer::moveOver(table, cell(numberColumn)); }, dialogMilliseconds,
                    closeUp});
    m_stops.append({QStringLiteral("service-dialog"),
                    [this, &table, cell] {
                        askLater(this, [&table, cell] {
                            if (auto *button = ViewPointer::moveOver(table, cell(firstOperationColumn)))
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
                        askLater(this, [this] { openComplaintDialog(); });
                    },
                    dialogMilliseconds});
}

void ScreenshotTour::addJournalStops(QTabWidget &tabs, QTreeView &journal)
{
    m_stops.append({QStringLiteral("journal-menu"),
                    [this, &tabs, &journal] {
                        closeDialog();
                        tabs.setCurrentIndex(ServiceLogTab);
                        askLater(this, [&journal] {
                            ViewPointer::openContextMenu(journal, journal.model()->index(1, numberColumn));
                        });
                    },
                    dialogMilliseconds,
                    [this, &journal] {
                        return topLeftOf(journal, {860, 230});
                    }});
    const auto askAbout = [this, &journal](const QString &action) {
        closeDialog();
        if (auto *ask = journal.window()->findChild<QAction *>(action))
            askLater(this, [ask] { ask->trigger(); });
    };
    m_stops.append({QStringLiteral("done-dialog"),
                    [askAbout] { askAbout(QStringLiteral("actionDoneOperation")); }, dialogMilliseconds});
    m_stops.append({QStringLiteral("delete-question"),
                    [askAbout] { askAbout(QStringLiteral("actionDeleteMaintainanceItem")); },
                    dialogMilliseconds});
}

void ScreenshotTour::addSettingsStops()
{
    m_stops.append({QStringLiteral("settings"), [this] {
                        closeDialog();
                        m_window.openSettings();
                    }});
    m_stops.append({QStringLiteral("settings-menu"),
                    [this] { askLater(this, [this] { openSettingsMenu(); }); }, dialogMilliseconds});
    m_stops.append({QStringLiteral("limits-dialog"),
                    [this] {
                        closeDialog();
                        askLater(this, [this] { openLimitsDialog(); });
                    },
                    dialogMilliseconds});
}

void ScreenshotTour::openSettingsMenu()
{
    if (auto *operations = m_window.findChild<QTreeView *>(QStringLiteral("tvServiceOperations")))
        ViewPointer::openContextMenu(*operations, operations->model()->index(1, 1));
}

void ScreenshotTour::openLimitsDialog()
{
    if (auto *schedule = m_window.findChild<QTreeView *>(QStringLiteral("tvServiceReglament")))
        ViewPointer::doubleClick(*schedule, schedule->model()->index(0, firstOperationColumn));
}

/// In the window's coordinates, the titles of the columns included.
QRect ScreenshotTour::topLeftOf(QWidget &view, const QSize &size) const
{
    return QRect(view.mapTo(&m_window, QPoint(0, 0)), size.boundedTo(view.size()));
}

void ScreenshotTour::openComplaintDialog()
{
    const QVector<FleetCar> cars = m_host.fleet().fleet().cars();
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
    if (stop.stay > 0)
        QTimer::singleShot(stop.stay, this, [this] { photograph(true); });
    else
        m_watch.finishWhenQuiet();
}

void ScreenshotTour::photograph(bool allAnswered)
{
    const QString name =
        QStringLiteral("%1-%2").arg(m_position + 1, 2, 10, QLatin1Char('0')).arg(m_stops.at(m_position).name);
    if (!allAnswered) {
        emit finished(ExitCode::NoAnswer, tr("плагин не ответил"));
        return;
    }
    const Stop &stop = m_stops.at(m_position);
    const QRect part = stop.part ? stop.part() : QRect();
    const QString error = Screenshot::save(m_window, m_folder, name, part);
    if (!error.isEmpty()) {
        emit finished(ExitCode::NoPicture, error);
        return;
    }
    emit saved(m_folder + QLatin1Char('/') + name + QLatin1String(".png"));
    ++m_position;
    visit();
}

#include "screenshottour.h"

#include "demohost.h"
#include "hostsettingsdialog.h"
#include "hostwindow.h"
#include "screenshot.h"

#include <QApplication>
#include <QMouseEvent>
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

/// So that the picture shows a message beside the journal.
void showLatestMessage(const QWidget &window)
{
    auto *table = window.findChild<QTableView *>(QStringLiteral("journalTable"));
    table->selectRow(table->model()->rowCount() - 1);
}

/// The plug-in asks in dialogs of its own; the next stop waits behind them.
void closeDialog()
{
    if (QWidget *dialog = QApplication::activeModalWidget())
        dialog->close();
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
    m_stops.append({QStringLiteral("settings"), [this] {
                        closeDialog();
                        m_window.openSettings();
                    }});
    addHostStops();
    visit();
}

void ScreenshotTour::addHostStops()
{
    m_stops.append({QLatin1String(hostTabNames[TrackTab]),
                    [this] {
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
    addDialogStops(*garage);
}

void ScreenshotTour::addDialogStops(QWidget &garage)
{
    // The dialogs keep their caller waiting, so they are asked for from the event loop.
    m_stops.append({QStringLiteral("service-dialog"),
                    [this, inner = garage.findChild<QTabWidget *>(), &garage] {
                        inner->setCurrentIndex(1); // the table stands on the second tab
                        QTimer::singleShot(0, this, [this, &garage] { openServiceDialog(garage); });
                    },
                    dialogMilliseconds});
    m_stops.append({QStringLiteral("complaint-dialog"),
                    [this] {
                        closeDialog();
                        QTimer::singleShot(0, this, &ScreenshotTour::openComplaintDialog);
                    },
                    dialogMilliseconds});
}

/// As a mechanic does: the pointer over a cell, a click on the button that appears.
void ScreenshotTour::openServiceDialog(QWidget &garage)
{
    auto *table = garage.findChild<QTreeView *>(QStringLiteral("tvMaintainanceTable"));
    if (!table || !table->model())
        return;
    const QPoint cell =
        table->visualRect(table->model()->index(0, table->model()->columnCount() - 1)).center();
    QMouseEvent move(QEvent::MouseMove, cell, table->viewport()->mapToGlobal(cell), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(table->viewport(), &move);
    for (QPushButton *button : table->viewport()->findChildren<QPushButton *>()) {
        if (button->isVisible()) {
            button->click();
            return;
        }
    }
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
        emit finished(QString());
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
    const QString error = allAnswered ? Screenshot::save(m_window, m_folder, name) : tr("плагин не ответил");
    if (!error.isEmpty()) {
        emit finished(error);
        return;
    }
    emit saved(m_folder + QLatin1Char('/') + name + QLatin1String(".png"));
    ++m_position;
    visit();
}

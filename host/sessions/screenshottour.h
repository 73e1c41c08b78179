#pragma once

#include "host/plugin/answerwatcher.h"

#include <QObject>
#include <QRect>
#include <QVector>

#include <functional>

class DemoHost;
class HostWindow;
class QTabWidget;
class QTreeView;

/// Walks through the window, waits at each place until the plug-in has answered, and saves what is to be
/// seen.
class ScreenshotTour final : public QObject
{
    Q_OBJECT
public:
    /// Karts drive and work is done on the way only if the tour `mayWrite`.
    ScreenshotTour(DemoHost &host, HostWindow &window, const QString &folder, bool mayWrite,
                   QObject *parent = nullptr);

    void start();

signals:
    void saved(const QString &fileName);
    /// With an exit code, and an error text unless that is Ok.
    void finished(int exitCode, const QString &error);

private:
    struct Stop
    {
        QString name;
        std::function<void()> go;
        int stay = 0; // milliseconds before the picture; 0 = until all is quiet
        std::function<QRect()> part = {}; // of the window; empty = all of it
    };

    void addPluginStops();
    void addMaintenanceStops(QTabWidget &tabs, QTreeView &table);
    void addComplaintStop();
    void addJournalStops(QTabWidget &tabs, QTreeView &journal);
    void addSettingsStops();
    void addHostStops();
    void showHostTab(int tab);
    void doSomeWork();
    void openComplaintDialog();
    void openSettingsMenu();
    void openLimitsDialog();
    QRect topLeftOf(QWidget &view, const QSize &size) const;
    void visit();
    void photograph(bool allAnswered);

    DemoHost &m_host;
    HostWindow &m_window;
    const QString m_folder;
    const bool m_mayWrite;
    AnswerWatch m_watch;
    QVector<Stop> m_stops;
    int m_position = 0;
};

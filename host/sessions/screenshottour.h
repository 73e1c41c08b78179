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

/// Opens each page, dialog and menu of the window in turn, waits until the plug-in is idle, and saves a
/// screenshot.
class ScreenshotTour final : public QObject
{
    Q_OBJECT
public:
    /// An empty `windowSize` is 1500x900. Only a tour that `mayWrite` simulates runs and completes services
    /// on the way.
    ScreenshotTour(DemoHost &host, HostWindow &window, const QString &folder, const QSize &windowSize,
                   bool mayWrite, QObject *parent = nullptr);

    void start();

signals:
    /// With an exit code, and an error text unless that is Ok.
    void finished(int exitCode, const QString &error);

private:
    struct Stop
    {
        QString name;
        std::function<void()> go;
        int delay = 0; // milliseconds before the picture; 0 = until the plug-in is idle
        std::function<QRect()> part = {}; // of the window; empty = all of it
    };

    void addPluginStops();
    void addMaintenanceStops(QTabWidget &tabs, QTreeView &table);
    void addComplaintStop();
    void addServiceLogStops(QTabWidget &tabs, QTreeView &log);
    void addSettingsStops();
    void addHostStops();
    void showHostTab(int tab);
    void doSomeWork();
    void openComplaintDialog();
    void openSettingsMenu();
    void openLimitsDialog();
    QRect topLeftOf(QWidget &view, const QSize &size) const;
    void visit();
    void saveScreenshot(bool allAnswered);

    DemoHost &m_host;
    HostWindow &m_window;
    const QString m_folder;
    const QSize m_windowSize;
    const bool m_mayWrite;
    AnswerWatcher m_watcher;
    QVector<Stop> m_stops;
    int m_position = 0;
};

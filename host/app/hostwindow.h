#pragma once

#include "host/app/plugintabs.h"

#include <QMainWindow>

class DemoHost;
class HostHome;
class HostSettingsDialog;
class QTabWidget;

/// The demonstration's main window: banner, the rooms' tabs, the plug-in's tab and settings.
class HostWindow final : public QMainWindow
{
    Q_OBJECT
public:
    HostWindow(DemoHost &host, const HostHome &home);
    ~HostWindow() override;

    /// Readies the rooms, shows the window and plays the start sequence.
    void start();
    void openGarage();
    void openSettings();
    void closeSettings();
    QTabWidget &tabs() { return *m_tabs; }

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *makeBanner(const HostHome &home);
    void makeToolBar();

    DemoHost &m_host;
    QTabWidget *m_tabs;
    PluginTabs m_pluginTabs;
    QPointer<HostSettingsDialog> m_settings;
};

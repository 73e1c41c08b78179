#pragma once

#include "host/app/plugintabs.h"
#include "host/result.h"

#include <QMainWindow>
#include <QStyle>

class DemoHost;
class DataFolder;
class HostSettingsDialog;
class QTabWidget;
class QToolBar;

/// The main window: the banner, a notice of writes that wait or failed, one tab per panel, the plug-in's tab,
/// the settings dialog.
class HostWindow final : public QMainWindow
{
    Q_OBJECT
public:
    HostWindow(DemoHost &host, const DataFolder &folder);
    ~HostWindow() override;

    /// Opens the remote side's records, shows the window and sends the start sequence to the plug-in.
    void start();
    void openGarage();
    void openSettings();
    void closeSettings();
    QTabWidget &tabs() { return *m_tabs; }
    /// Saves a picture of the window, or of the modal dialog, as `folder`/`name`.png with its open menu.
    /// `part` limits the picture unless it is null.
    Result saveScreenshot(const QString &folder, const QString &name, const QRect &part = QRect());

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *makeBanner(const DataFolder &folder);
    void makeToolBar();
    QAction *addSection(QToolBar &bar, QStyle::StandardPixmap icon, const QString &text, Qt::Key key);

    DemoHost &m_host;
    QTabWidget *m_tabs;
    PluginTabs m_pluginTabs;
    QPointer<HostSettingsDialog> m_settings;
};

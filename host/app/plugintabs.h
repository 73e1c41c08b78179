#pragma once

#include "host/plugin/hostmessage.h"

#include <QObject>
#include <QPointer>
#include <QVector>

class PluginHost;
class QTabWidget;
class QWidget;

/// Handles "insert_tab" and "close_tab" in a tab widget. The plug-in owns its windows: this class shows,
/// hides and finally detaches them, and never destroys them.
class PluginTabs final : public QObject
{
    Q_OBJECT
public:
    PluginTabs(PluginHost &plugin, QTabWidget &tabs, QObject *parent = nullptr);

    /// Detaches the plug-in's windows. Call before the tab widget or the plug-in is destroyed.
    void releaseWindows();

private:
    void handleMessage(const HostMessage &message);
    void insert(const HostMessage &message);
    void close(const HostMessage &message);

    QTabWidget &m_tabs;
    QVector<QPointer<QWidget>> m_windows;
};

#pragma once

#include "host/plugin/hostmessage.h"

#include <QObject>
#include <QPointer>
#include <QVector>

class PluginHost;
class QTabWidget;
class QWidget;

/// Honours "insert_tab" and "close_tab" in a tab widget. The plug-in keeps its windows: here they are shown,
/// hidden and at the end given back, never destroyed.
class PluginTabs final : public QObject
{
    Q_OBJECT
public:
    PluginTabs(PluginHost &plugin, QTabWidget &tabs, QObject *parent = nullptr);

    /// Takes the plug-in's windows out of the host's; call before the tab widget or the plug-in dies.
    void giveBack();

private:
    void take(const HostMessage &message);
    void insert(const QJsonObject &data);
    void close(const QJsonObject &data);

    QTabWidget &m_tabs;
    QVector<QPointer<QWidget>> m_windows;
};

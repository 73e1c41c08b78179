#pragma once

#include "host/plugin/hostmessage.h"

#include <QDialog>
#include <QPointer>
#include <QVector>

class PluginHost;
class QTabWidget;

/// The host's settings: asks the plug-ins for their pages and shows them for as long as the dialog lives. The
/// pages stay the plug-ins' own and are given back.
class HostSettingsDialog final : public QDialog
{
    Q_OBJECT
public:
    explicit HostSettingsDialog(PluginHost &plugin, QWidget *parent = nullptr);
    ~HostSettingsDialog() override;

    int pageCount() const { return m_pages.size(); }

private:
    void take(const HostMessage &message);

    QTabWidget *m_tabs;
    QVector<QPointer<QWidget>> m_pages;
};

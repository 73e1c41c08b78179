#pragma once

#include "host/plugin/hostmessage.h"

#include <QDialog>
#include <QPointer>
#include <QVector>

class PluginHost;
class QTabWidget;

/// The host's settings: requests the plug-in's pages and shows them as tabs. The plug-in owns the pages; the
/// destructor detaches them.
class HostSettingsDialog final : public QDialog
{
    Q_OBJECT
public:
    explicit HostSettingsDialog(PluginHost &plugin, QWidget *parent = nullptr);
    ~HostSettingsDialog() override;

    int pageCount() const { return int(m_pages.size()); }

private:
    void handleMessage(const HostMessage &message);

    QTabWidget *m_tabs;
    QVector<QPointer<QWidget>> m_pages;
};

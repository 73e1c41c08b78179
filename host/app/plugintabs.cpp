#include "host/app/plugintabs.h"

#include "host/plugin/pluginhost.h"

#include <QTabWidget>

PluginTabs::PluginTabs(PluginHost &plugin, QTabWidget &tabs, QObject *parent) : QObject(parent), m_tabs(tabs)
{
    connect(&plugin, &PluginHost::received, this, &PluginTabs::handleMessage);
}

void PluginTabs::releaseWindows()
{
    for (const QPointer<QWidget> &window : qAsConst(m_windows)) {
        if (!window)
            continue;
        m_tabs.removeTab(m_tabs.indexOf(window));
        window->hide();
        window->setParent(nullptr);
    }
    m_windows.clear();
}

void PluginTabs::handleMessage(const HostMessage &message)
{
    if (message.event == QLatin1String("insert_tab"))
        insert(message);
    else if (message.event == QLatin1String("close_tab"))
        close(message);
}

void PluginTabs::insert(const HostMessage &message)
{
    QWidget *window = message.widget(QLatin1String("tabWidget"));
    if (!window)
        return;
    if (m_tabs.indexOf(window) < 0) {
        m_tabs.insertTab(message.data.value(QLatin1String("index")).toInt(), window,
                         message.data.value(QLatin1String("tabCaption")).toString());
        m_windows.append(window);
    }
    m_tabs.setCurrentWidget(window);
}

void PluginTabs::close(const HostMessage &message)
{
    const QWidget *window = message.widget(QLatin1String("tabWidget"));
    for (const QPointer<QWidget> &known : qAsConst(m_windows)) {
        if (known && known == window)
            m_tabs.removeTab(m_tabs.indexOf(known));
    }
}

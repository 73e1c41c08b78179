#include "host/app/hostsettingsdialog.h"

#include "host/plugin/pluginhost.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {
const QSize usualSize(960, 600);
} // namespace

HostSettingsDialog::HostSettingsDialog(PluginHost &plugin, QWidget *parent)
    : QDialog(parent), m_tabs(new QTabWidget)
{
    setWindowTitle(tr("Settings"));
    setObjectName(QStringLiteral("hostSettingsDialog"));
    resize(usualSize.boundedTo(parent ? parent->window()->size() : usualSize));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(tr("Close"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&plugin, &PluginHost::received, this, &HostSettingsDialog::handleMessage);
    plugin.send(QStringLiteral("send_settings_dialogs"));
}

HostSettingsDialog::~HostSettingsDialog()
{
    for (const QPointer<QWidget> &page : qAsConst(m_pages)) {
        if (!page)
            continue;
        m_tabs->removeTab(m_tabs->indexOf(page));
        page->hide();
        page->setParent(nullptr);
    }
}

void HostSettingsDialog::handleMessage(const HostMessage &message)
{
    QWidget *page = message.event == QLatin1String("settings_dialog")
        ? message.widget(QLatin1String("settingsPagePtr"))
        : nullptr;
    if (!page || m_tabs->indexOf(page) >= 0)
        return;
    m_pages.append(page);
    m_tabs->addTab(page, message.data.value(QLatin1String("settingsCaption")).toString());
}

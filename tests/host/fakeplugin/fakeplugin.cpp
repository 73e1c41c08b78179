#include "fakeplugin.h"

#include <QJsonArray>
#include <QTimer>

namespace {
const QLatin1String fakeModule("fake_plugin");
} // namespace

FakePlugin::FakePlugin()
{
    m_window.setObjectName(QStringLiteral("fakeWindow"));
    m_page.setObjectName(QStringLiteral("fakePage"));
}

void FakePlugin::pluginSlot(QString module, QString event, QJsonObject jsonData)
{
    emit pluginSignal(fakeModule, QStringLiteral("echo"),
                      {{QStringLiteral("module"), module},
                       {QStringLiteral("event"), event},
                       {QStringLiteral("data"), jsonData}});
    if (event == QLatin1String("clicked"))
        emit pluginSignal(fakeModule, QStringLiteral("insert_tab"),
                          addressOf(QStringLiteral("tabWidget"), &m_window));
    else if (event == QLatin1String("send_settings_dialogs"))
        emit pluginSignal(fakeModule, QStringLiteral("settings_dialog"),
                          addressOf(QStringLiteral("settingsPagePtr"), &m_page));
    else if (event == QLatin1String("run_saved_to_db"))
        QTimer::singleShot(answerDelay, this, &FakePlugin::reportNothingDue);
    else if (event == QLatin1String("say"))
        emit pluginSignal(fakeModule, jsonData.value(QLatin1String("event")).toString(),
                          jsonData.value(QLatin1String("data")).toObject());
}

QJsonObject FakePlugin::addressOf(const QString &key, QWidget *widget)
{
    return {{key, double(reinterpret_cast<qlonglong>(widget))},
            {QStringLiteral("tabCaption"), caption()},
            {QStringLiteral("settingsCaption"), caption()},
            {QStringLiteral("moduleName"), moduleName()}};
}

void FakePlugin::reportNothingDue()
{
    emit pluginSignal(fakeModule, QStringLiteral("update_pending_service"),
                      {{QStringLiteral("servicePendingList"), QJsonArray()},
                       {QStringLiteral("maintainanceStatus"), QJsonArray()}});
}

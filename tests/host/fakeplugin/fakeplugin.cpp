#include "fakeplugin.h"

#include <QJsonArray>
#include <QTimer>

namespace {
const QLatin1String fakeModule("fake_plugin");
} // namespace

FakePlugin::FakePlugin()
{
    m_window.setObjectName("fakeWindow");
    m_page.setObjectName("fakePage");
}

void FakePlugin::pluginSlot(QString module, QString event, QJsonObject jsonData)
{
    emit pluginSignal(fakeModule, "echo", {{"module", module}, {"event", event}, {"data", jsonData}});
    if (event == "clicked")
        emit pluginSignal(fakeModule, "insert_tab", addressOf("tabWidget", &m_window));
    else if (event == "send_settings_dialogs")
        emit pluginSignal(fakeModule, "settings_dialog", addressOf("settingsPagePtr", &m_page));
    else if (event == "run_saved_to_db")
        QTimer::singleShot(answerDelay, this, &FakePlugin::reportNothingDue);
    else if (event == "say")
        emit pluginSignal(fakeModule, jsonData.value("event").toString(), jsonData.value("data").toObject());
}

QJsonObject FakePlugin::addressOf(const QString &key, QWidget *widget)
{
    return {{key, double(reinterpret_cast<qlonglong>(widget))},
            {"tabCaption", caption()},
            {"settingsCaption", caption()},
            {"moduleName", moduleName()}};
}

void FakePlugin::reportNothingDue()
{
    emit pluginSignal(fakeModule, "update_pending_service",
                      {{"servicePendingList", QJsonArray()}, {"maintainanceStatus", QJsonArray()}});
}

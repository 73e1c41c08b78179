#pragma once

#include "trivexplugininterface.h"

#include <QLabel>

/// Stands in for a plug-in: echoes every message, answers the few that a host waits for, and says what it is
/// told to say ("say" with "event" and "data").
class FakePlugin final : public TrivexPluginInterface
{
    Q_OBJECT
    Q_INTERFACES(TrivexPluginInterface)
    Q_PLUGIN_METADATA(IID TRIVEX_PLUGIN_IID)
public:
    static constexpr int answerDelay = 600; // milliseconds; longer than a host waits for idle talk

    FakePlugin();

    QWidget *settingsPage() override { return &m_page; }
    QWidget *auxiliaryWidget() override { return nullptr; }
    QString caption() override { return "Подставной"; }
    QString moduleName() override { return "fake_plugin"; }
    QStringList emittedEvents() override { return {}; }
    QStringList subscribedEvents() override { return {}; }
    void pluginSlot(QString module, QString event, QJsonObject jsonData) override;

private:
    QJsonObject addressOf(const QString &key, QWidget *widget);
    void reportNothingDue();

    QLabel m_window;
    QLabel m_page;
};

#pragma once

#include "garage/garageform.h"
#include "settings/garagesettingsform.h"
#include "trivexplugininterface.h"

#include <QJsonArray>
#include <QPointer>

/// Root object of the plug-in: owns the garage window and the settings page, turns the host's events into
/// calls on them, and sends on what they have to tell the host. Both widgets live as long as this object,
/// whatever windows of its own the host puts them into; it ends with the application object at the latest.
/// GUI thread only.
class RuvaloGaragePlugin final : public TrivexPluginInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TRIVEX_PLUGIN_IID)
    Q_INTERFACES(TrivexPluginInterface)
public:
    RuvaloGaragePlugin();
    ~RuvaloGaragePlugin() override;

    QWidget *settingsPage() override;
    QWidget *auxiliaryWidget() override;
    QString caption() override;
    QString moduleName() override;
    QStringList emittedEvents() override;
    QStringList subscribedEvents() override;
    void pluginSlot(QString module, QString event, QJsonObject jsonData) override;

public slots:
    /// Asks the host to hide the garage tab.
    void closeGarage();

private:
    void send(const QString &event, const QJsonObject &jsonData);

    void handleClicked(const QJsonObject &jsonData);
    void handleCarsListChanged(const QJsonObject &jsonData);
    void handleSendSettingsDialogs(const QJsonObject &jsonData);
    void handlePersonalList(const QJsonObject &jsonData);
    void handleLoadComplete(const QJsonObject &jsonData);
    void handleRunSavedToDb(const QJsonObject &jsonData);
    void handleRemoteControlData(const QJsonObject &jsonData);
    void handleRemoteServiceData(const QJsonObject &jsonData);
    void handleCarComplain(const QJsonObject &jsonData);

    QJsonArray m_personalList;
    const QString m_description;
    const QString m_moduleName;
    const QString m_caption;
    const QStringList m_emittedEvents;
    const QStringList m_subscribedEvents;
    QPointer<GarageForm> m_garageForm; ///< owned; null only if the host deleted it
    GarageSettingsForm m_settingsForm;
};

#pragma once

#include "garage/garageform.h"
#include "settings/garagesettingsform.h"
#include "trivexplugininterface.h"

#include <QJsonArray>
#include <QPointer>

#include <memory>

/// Root object of the plug-in: owns the garage window and the settings page, turns the host's events into
/// calls on them, and forwards their messages to the host. Both widgets live as long as this object, in
/// whatever windows the host puts them. GUI thread only.
///
/// Pending writes are finished, within 10 s, when the host quits its event loop, when this object is deleted,
/// at the latest with the application object, and when the process exits without that. What was stored is
/// announced while the host is intact: on quitting, and on deletion unless a parent or the end of the
/// application object causes it.
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

    /// At the exit of the process, with or without an application object: finishes the writes and ends the
    /// loader's thread. Touches no widget; the destructor then deletes neither window nor page.
    void stopLoader();

public slots:
    /// Asks the host to hide the garage tab.
    void closeGarage();

private:
    void finishWrites();
    void forwardLoaderMessage(const QString &module, const QString &event, const QJsonObject &jsonData);
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
    std::unique_ptr<GarageSettingsForm> m_settingsForm;
    QPointer<GarageForm> m_garageForm; ///< owned; null only if the host deleted it
    QObject
        m_loaderMessages; ///< receives the loader's messages, so that they can be delivered apart from others
    bool m_isEnding = false;
};

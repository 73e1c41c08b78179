#include "ruvalogarageplugin.h"

#include "settings/servicereglamentmodel.h"
#include "widgetreparentguard.h"

#include <QCoreApplication>

namespace {

/// Addresses travel as JSON numbers.
QJsonValue address(const QWidget *widget)
{
    return qlonglong(reinterpret_cast<quintptr>(widget));
}

QPointer<RuvaloGaragePlugin> livingPlugin;

/// A host may end without unloading its plug-ins. Widgets must not outlive the application object, and what
/// the mechanic has confirmed must still be written.
void endWithTheApplication()
{
    delete livingPlugin;
}

} // namespace

RuvaloGaragePlugin::RuvaloGaragePlugin()
    : m_description(tr("Данные по обслуживанию техники"))
    , m_moduleName(QStringLiteral("garage_plugin"))
    , m_caption(tr("Гараж"))
    , m_emittedEvents {QStringLiteral("insert_tab"),
                       QStringLiteral("close_tab"),
                       QStringLiteral("read_cars_list"),
                       QStringLiteral("settings_dialog"),
                       QStringLiteral("service_ops_changed"),
                       QStringLiteral("update_pending_service"),
                       QStringLiteral("update_remote_service"),
                       QStringLiteral("remote_service_move_to_archive"),
                       QStringLiteral("add_remote_service"),
                       QStringLiteral("remote_control_answer"),
                       QStringLiteral("remote_service_delete"),
                       QStringLiteral("update_cars")}
    , m_subscribedEvents {QStringLiteral("car_complain"),          QStringLiteral("clicked"),
                          QStringLiteral("cars_list_changed"),     QStringLiteral("personal_list"),
                          QStringLiteral("send_settings_dialogs"), QStringLiteral("run_closed"),
                          QStringLiteral("run_saved_to_db"),       QStringLiteral("remote_control_data"),
                          QStringLiteral("remote_service_data")}
{
    // Unused here; kept on purpose, because hosts may rely on the registration and its conversion to a
    // sequence.
    qRegisterMetaType<QVector<QObject *>>("QVector<QObject *>");
    pluginOrder = 37;
    setObjectName(m_description);
    new WidgetReparentGuard(m_settingsForm);
    connect(&m_settingsForm, &GarageSettingsForm::pluginSignal, this, &RuvaloGaragePlugin::pluginSignal);

    m_garageForm = new GarageForm;
    new WidgetReparentGuard(*m_garageForm);
    connect(&m_garageForm->updater(), &GarageUpdater::pluginSignal, this, &RuvaloGaragePlugin::pluginSignal);
    connect(m_garageForm, &GarageForm::addRemoteOperation, this,
            [this](const QJsonObject &operation) { send(QStringLiteral("add_remote_service"), operation); });
    m_garageForm->setReglament(m_settingsForm.reglamentModel());
    connect(m_garageForm, &GarageForm::closeGarage, this, &RuvaloGaragePlugin::closeGarage);
    connect(m_garageForm, &GarageForm::pluginSignal, this, &RuvaloGaragePlugin::send);

    livingPlugin = this;
    qAddPostRoutine(endWithTheApplication);
}

RuvaloGaragePlugin::~RuvaloGaragePlugin()
{
    qRemovePostRoutine(endWithTheApplication);
    delete m_garageForm;
    // The loader has just carried out its last writes. The host still hears of them, or the remote side would
    // keep records for good that are deleted here.
    if (QCoreApplication::instance())
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

QWidget *RuvaloGaragePlugin::settingsPage()
{
    return &m_settingsForm;
}

QWidget *RuvaloGaragePlugin::auxiliaryWidget()
{
    return nullptr;
}

QString RuvaloGaragePlugin::caption()
{
    return m_caption;
}

QString RuvaloGaragePlugin::moduleName()
{
    return m_moduleName;
}

QStringList RuvaloGaragePlugin::emittedEvents()
{
    return m_emittedEvents;
}

QStringList RuvaloGaragePlugin::subscribedEvents()
{
    return m_subscribedEvents;
}

void RuvaloGaragePlugin::send(const QString &event, const QJsonObject &jsonData)
{
    emit pluginSignal(m_moduleName, event, jsonData);
}

void RuvaloGaragePlugin::pluginSlot(QString module, QString event, QJsonObject jsonData)
{
    Q_UNUSED(module)
    struct Handler
    {
        QLatin1String subscribed;
        void (RuvaloGaragePlugin::*handle)(const QJsonObject &);
    };
    static const Handler handlers[] = {
        {QLatin1String("clicked"), &RuvaloGaragePlugin::handleClicked},
        {QLatin1String("cars_list_changed"), &RuvaloGaragePlugin::handleCarsListChanged},
        {QLatin1String("send_settings_dialogs"), &RuvaloGaragePlugin::handleSendSettingsDialogs},
        {QLatin1String("personal_list"), &RuvaloGaragePlugin::handlePersonalList},
        {QLatin1String("load_complete"), &RuvaloGaragePlugin::handleLoadComplete},
        {QLatin1String("run_saved_to_db"), &RuvaloGaragePlugin::handleRunSavedToDb},
        {QLatin1String("remote_control_data"), &RuvaloGaragePlugin::handleRemoteControlData},
        {QLatin1String("remote_service_data"), &RuvaloGaragePlugin::handleRemoteServiceData},
        {QLatin1String("car_complain"), &RuvaloGaragePlugin::handleCarComplain},
    };
    for (const Handler &handler : handlers) {
        if (event == handler.subscribed) {
            (this->*handler.handle)(jsonData);
            return;
        }
    }
}

void RuvaloGaragePlugin::closeGarage()
{
    send(QStringLiteral("close_tab"),
         {{QStringLiteral("tabWidget"), address(m_garageForm)},
          {QStringLiteral("moduleName"), m_moduleName},
          {QStringLiteral("onlyHide"), true}});
}

void RuvaloGaragePlugin::handleClicked(const QJsonObject &jsonData)
{
    if (!m_garageForm || jsonData.value(QLatin1String("key")).toString() != QLatin1String("show_garage"))
        return;
    send(QStringLiteral("insert_tab"),
         {{QStringLiteral("tabWidget"), address(m_garageForm)},
          {QStringLiteral("tabCaption"), m_caption},
          {QStringLiteral("index"), 0},
          {QStringLiteral("moduleName"), m_moduleName}});
}

void RuvaloGaragePlugin::handleCarsListChanged(const QJsonObject &jsonData)
{
    if (m_garageForm) {
        if (m_garageForm->isVisible() && !jsonData.value(QLatin1String("noStatsUpdate")).toBool())
            m_garageForm->requestReload();
        m_garageForm->loadCars(jsonData);
    }
    m_settingsForm.reloadReglamentModel();
}

void RuvaloGaragePlugin::handleSendSettingsDialogs(const QJsonObject &jsonData)
{
    Q_UNUSED(jsonData)
    send(QStringLiteral("settings_dialog"),
         {{QStringLiteral("moduleName"), m_moduleName},
          {QStringLiteral("settingsCaption"), m_caption},
          {QStringLiteral("settingsPagePtr"), address(settingsPage())}});
}

void RuvaloGaragePlugin::handlePersonalList(const QJsonObject &jsonData)
{
    m_personalList = jsonData.value(QLatin1String("personalList")).toArray();
    if (m_garageForm)
        m_garageForm->setPersonalList(m_personalList);
}

void RuvaloGaragePlugin::handleLoadComplete(const QJsonObject &jsonData)
{
    Q_UNUSED(jsonData)
    send(QStringLiteral("read_cars_list"), {});
    send(QStringLiteral("update_remote_service"), {});
    if (m_garageForm)
        m_garageForm->setPersonalList(m_personalList);
}

void RuvaloGaragePlugin::handleRunSavedToDb(const QJsonObject &jsonData)
{
    Q_UNUSED(jsonData)
    if (m_garageForm)
        m_garageForm->requestReload();
}

void RuvaloGaragePlugin::handleRemoteControlData(const QJsonObject &jsonData)
{
    if (jsonData.value(QLatin1String("msg")).toString() == QLatin1String("service_operation_done")) {
        handleRemoteServiceData(jsonData);
        return;
    }
    if (!m_garageForm)
        return;

    const QJsonObject answer = m_garageForm->remoteControlRequest({}, jsonData);
    if (answer.isEmpty() || jsonData.value(QLatin1String("skipAnswer")).toBool())
        return;
    const QLatin1String sinkId("sinkId");
    send(QStringLiteral("remote_control_answer"),
         {{QStringLiteral("req_answ"), answer},
          {QStringLiteral("sinkId"),
           answer.contains(sinkId) ? answer.value(sinkId) : jsonData.value(sinkId)}});
}

void RuvaloGaragePlugin::handleRemoteServiceData(const QJsonObject &jsonData)
{
    if (m_garageForm)
        m_garageForm->remoteServiceData(jsonData);
}

void RuvaloGaragePlugin::handleCarComplain(const QJsonObject &jsonData)
{
    if (m_garageForm)
        m_garageForm->complainAboutCar(jsonData);
}

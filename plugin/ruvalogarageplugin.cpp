#include "ruvalogarageplugin.h"

#include "settings/servicereglamentmodel.h"
#include "widgetreparentguard.h"

#include <QCoreApplication>

#include <cstdlib>

namespace {

/// Addresses are JSON numbers in messages.
QJsonValue address(const QWidget *widget)
{
    return qlonglong(reinterpret_cast<quintptr>(widget));
}

QPointer<RuvaloGaragePlugin> livingPlugin;
bool isApplicationEnding = false;
bool isProcessExiting = false;

/// A host may end without unloading its plug-ins. Widgets must not outlive the application object.
void endWithApplication()
{
    isApplicationEnding = true;
    delete livingPlugin;
    isApplicationEnding = false;
}

/// A host may also end by exit(), or never delete its application object.
void stopLoaderAtExit()
{
    isProcessExiting = true;
    if (livingPlugin)
        livingPlugin->stopLoader();
}

/// Qt clears a child's place in the list of its parent before the parent deletes it.
bool isDeletedByParent(QObject *object)
{
    return object->parent() && !object->parent()->children().contains(object);
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
    , m_settingsForm(std::make_unique<GarageSettingsForm>())
{
    // Unused here; kept on purpose, because hosts may rely on the registration and its conversion to a
    // sequence.
    qRegisterMetaType<QVector<QObject *>>("QVector<QObject *>");
    pluginOrder = 37;
    setObjectName(m_description);
    new WidgetReparentGuard(*m_settingsForm);
    connect(m_settingsForm.get(), &GarageSettingsForm::pluginSignal, this, &RuvaloGaragePlugin::pluginSignal);

    m_garageForm = new GarageForm;
    new WidgetReparentGuard(*m_garageForm);
    connect(&m_garageForm->updater(), &GarageUpdater::pluginSignal, &m_loaderMessages,
            [this](const QString &module, const QString &event, const QJsonObject &jsonData) {
                forwardLoaderMessage(module, event, jsonData);
            });
    connect(m_garageForm, &GarageForm::addRemoteOperation, this,
            [this](const QJsonObject &operation) { send(QStringLiteral("add_remote_service"), operation); });
    m_garageForm->setReglament(m_settingsForm->reglamentModel());
    connect(m_garageForm, &GarageForm::closeGarage, this, &RuvaloGaragePlugin::closeGarage);
    connect(m_garageForm, &GarageForm::pluginSignal, this, &RuvaloGaragePlugin::send);

    livingPlugin = this;
    connect(qApp, &QCoreApplication::aboutToQuit, this, &RuvaloGaragePlugin::finishWrites);
    qAddPostRoutine(endWithApplication);
    // Registered after Qt has created its list of database connections, which is destroyed after this call.
    static const int registration = std::atexit(stopLoaderAtExit);
    Q_UNUSED(registration)
}

RuvaloGaragePlugin::~RuvaloGaragePlugin()
{
    qRemovePostRoutine(endWithApplication);
    if (isProcessExiting) {
        // Qt's own data for widgets may be destroyed. The end of the process frees the memory.
        static_cast<void>(m_settingsForm.release());
        return;
    }
    const bool isHostWhole =
        !isApplicationEnding && !QCoreApplication::closingDown() && !isDeletedByParent(this);
    m_isEnding = true;
    blockSignals(true);
    delete m_garageForm;
    if (isHostWhole) {
        // What was stored at the end is announced; otherwise the remote side would never delete records that
        // are deleted here.
        blockSignals(false);
        QCoreApplication::sendPostedEvents(&m_loaderMessages, QEvent::MetaCall);
        blockSignals(true);
    }
}

void RuvaloGaragePlugin::stopLoader()
{
    if (m_garageForm)
        m_garageForm->updater().stop();
}

void RuvaloGaragePlugin::finishWrites()
{
    if (!m_garageForm)
        return;
    m_garageForm->updater().finishWrites();
    QCoreApplication::sendPostedEvents(&m_loaderMessages, QEvent::MetaCall);
    // Delivered only if the host runs an event loop again.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_garageForm)
                m_garageForm->updater().resumeReloads();
        },
        Qt::QueuedConnection);
}

void RuvaloGaragePlugin::forwardLoaderMessage(const QString &module, const QString &event,
                                              const QJsonObject &jsonData)
{
    const bool reportsWrite = event == QLatin1String("remote_service_delete")
        || event == QLatin1String("remote_service_move_to_archive");
    if (reportsWrite || !m_isEnding)
        emit pluginSignal(module, event, jsonData);
}

QWidget *RuvaloGaragePlugin::settingsPage()
{
    return m_settingsForm.get();
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
    m_settingsForm->reloadReglamentModel();
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

#include "brokenplugin.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QThread>

#include <cstdlib>

namespace {

QJsonArray remoteRecords(const QJsonObject &data)
{
    return QJsonDocument::fromJson(data.value("data").toString().toUtf8()).array();
}

[[maybe_unused]] QJsonObject asRemoteData(const QJsonArray &records)
{
    return {{"data", QString(QJsonDocument(records).toJson())}};
}

/// As a plug-in that writes in the host's thread would: until the lock is free nothing else happens.
[[maybe_unused]] void waitForTheLock()
{
    const QString name = "impatient";
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", name);
        database.setConnectOptions("QSQLITE_BUSY_TIMEOUT=1");
        database.setDatabaseName(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                                 + "/Ruvalo-QT/DB/ruvalo.sqlite");
        database.open();
        QSqlQuery query(database);
        while (!query.exec("BEGIN IMMEDIATE"))
            QThread::msleep(20);
        query.exec("COMMIT");
    }
    QSqlDatabase::removeDatabase(name);
}

} // namespace

RuvaloGaragePlugin::RuvaloGaragePlugin()
    : m_loader(GARAGE_PLUGIN), m_real(qobject_cast<TrivexPluginInterface *>(m_loader.instance()))
{
    if (!m_real)
        qFatal("The real plug-in does not load: %s", qPrintable(m_loader.errorString()));
    pluginOrder = m_real->pluginOrder;
    connect(m_real, &TrivexPluginInterface::pluginSignal, this, &TrivexPluginInterface::pluginSignal);
}

RuvaloGaragePlugin::~RuvaloGaragePlugin()
{
    m_loader.unload();
}

void RuvaloGaragePlugin::closeGarage()
{
    QMetaObject::invokeMethod(m_real, "closeGarage");
}

void RuvaloGaragePlugin::pluginSlot(QString module, QString event, QJsonObject jsonData)
{
#ifdef FAULT_ANSWERS_IN_WRONG_ORDER
    if (event == "load_complete") {
        emit pluginSignal(moduleName(), "update_remote_service", {});
        emit pluginSignal(moduleName(), "read_cars_list", {});
        return;
    }
#endif
    if (event == "remote_service_data") {
        const QJsonArray records = remoteRecords(jsonData);
#ifdef FAULT_CRASHES_ON_BAD_INPUT
        if (records.isEmpty())
            std::abort();
#endif
#ifdef FAULT_WRITES_ONE_BY_ONE
        for (const QJsonValue &record : records)
            m_real->pluginSlot(module, event, asRemoteData({record}));
        return;
#endif
#ifdef FAULT_HANGS_ON_A_LOCK
        if (!records.isEmpty())
            waitForTheLock();
#endif
    }
    m_real->pluginSlot(module, event, jsonData);
}

#include "data/garageupdater.h"

#include "data/duelist.h"
#include "data/garagestatistics.h"
#include "data/servicerecordstore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QVector>

namespace {

// A failing attempt lasts as long as the driver's busy timeout (5 s). One that begins within this time
// after the wish to stop is over before 10 s have passed.
constexpr qint64 lastAttemptMs = 4500;

void mark(const char *step)
{
    qDebug() << step << QDateTime::currentDateTime();
}

} // namespace

GarageUpdater::GarageUpdater() : m_moduleName(QStringLiteral("garage_stats_updater"))
{
    qRegisterMetaType<QList<MaintainanceModel::MaintainanceItem>>(
        "QList<MaintainanceModel::MaintainanceItem>");
    qRegisterMetaType<QList<ServiceLogModel::ServiceLogItem>>("QList<ServiceLogModel::ServiceLogItem>");
    // "String" is kept on purpose, because the type is known under this registered name.
    qRegisterMetaType<QMap<int, QString>>("QMap<int,String>");

    // Connected before the start: afterwards the thread may already have told that it started.
    connect(&m_thread, &QThread::started, this, &GarageUpdater::openDatabase);
    connect(&m_thread, &QThread::finished, this, &GarageUpdater::closeDatabase, Qt::DirectConnection);
    moveToThread(&m_thread);
    m_thread.start();
}

GarageUpdater::~GarageUpdater()
{
    m_sinceStop.start();
    m_stopping = true;
    // Queued behind the writes that were asked for before. Without an application nothing queued arrives.
    if (QCoreApplication::instance())
        QMetaObject::invokeMethod(
            this, [this] { m_thread.quit(); }, Qt::QueuedConnection);
    else
        m_thread.quit();
    m_thread.wait();
}

void GarageUpdater::openDatabase()
{
    m_database = std::make_unique<GarageDatabase>(QStringLiteral("garageStatsLoader"));
}

void GarageUpdater::closeDatabase()
{
    m_database.reset();
}

bool GarageUpdater::mayKeepTrying()
{
    m_gaveUp = isStopping() && m_sinceStop.elapsed() >= lastAttemptMs;
    return !m_gaveUp;
}

void GarageUpdater::send(const QString &event, const QJsonObject &jsonData)
{
    emit pluginSignal(m_moduleName, event, jsonData);
}

void GarageUpdater::reloadStats()
{
    if (isStopping())
        return;
    m_database->ensureOpen();

    mark("step 0 start ");
    QList<MaintainanceItem> cars = GarageStatistics::readCars(*m_database);
    if (isStopping())
        return;

    GarageStatistics::readDrivingSinceService(*m_database, cars);
    mark("step 1 done ");
    if (isStopping())
        return;

    const QList<ServiceLogItem> serviceLog = GarageStatistics::readServiceLog(*m_database);
    mark("step 2 done ");
    if (isStopping())
        return;

    const QList<ModelReglament> reglament = GarageStatistics::readReglament(*m_database);
    mark("step 3 done ");
    const ServiceOperations operations = GarageStatistics::readOperations(*m_database);

    const QJsonObject status {
        {QStringLiteral("servicePendingList"), DueList::pendingServices(cars, reglament)},
        {QStringLiteral("maintainanceStatus"), DueList::carStatuses(cars)},
    };
    mark("step 4 done ");

    send(QStringLiteral("update_pending_service"), status);
    emit garageStatsUpdated(cars, serviceLog, operations);
}

void GarageUpdater::updateService(QJsonArray serviceOps, QJsonArray personalList)
{
    if (m_gaveUp)
        return;
    QVector<RemoteServiceRecord> records;
    QJsonArray ids;
    records.reserve(serviceOps.size());
    for (const QJsonValue &value : qAsConst(serviceOps)) {
        const QJsonObject json = value.toObject();
        records.append(RemoteServiceRecord::fromJson(json, personalList));
        ids.append(json.value(QLatin1String("id")));
    }
    ServiceRecordStore::storeRemote(*m_database, records, [this] { return mayKeepTrying(); });
    if (m_gaveUp)
        return;

    reloadStats();
    send(QStringLiteral("remote_service_move_to_archive"), {{QStringLiteral("idList"), ids}});
}

void GarageUpdater::deleteOperation(int id, int remoteId)
{
    if (m_gaveUp)
        return;
    ServiceRecordStore::remove(*m_database, id, [this] { return mayKeepTrying(); });
    if (m_gaveUp)
        return;

    send(QStringLiteral("remote_service_delete"),
         {{QStringLiteral("remoteId"), remoteId}, {QStringLiteral("localId"), id}});
    reloadStats();
}

#include "support/loaderprobe.h"

#include <QtTest>

LoaderProbe::LoaderProbe() : m_loader(std::make_unique<GarageUpdater>())
{
    connect(this, &LoaderProbe::reloadRequested, m_loader.get(), &GarageUpdater::reloadStats);
    connect(this, &LoaderProbe::updateRequested, m_loader.get(), &GarageUpdater::updateService);
    connect(this, &LoaderProbe::deleteRequested, m_loader.get(), &GarageUpdater::deleteOperation);
    connect(m_loader.get(), &GarageUpdater::pluginSignal, this,
            [this](const QString &module, const QString &event, const QJsonObject &data) {
                messages.append({module, event, data});
                sequence.append(event);
            });
    connect(m_loader.get(), &GarageUpdater::garageStatsUpdated, this,
            [this](const QList<MaintainanceItem> &newCars, const QList<ServiceLogItem> &newLog,
                   const ServiceOperations &newOperations) {
                cars = newCars;
                log = newLog;
                operations = newOperations;
                sequence.append("garageStatsUpdated");
                ++reloads;
            });
}

void LoaderProbe::reload()
{
    const int expected = reloads + 1;
    emit reloadRequested();
    QVERIFY(waitForReloads(expected));
}

void LoaderProbe::updateService(const QJsonArray &serviceOps, const QJsonArray &personalList)
{
    const int sent = int(sequence.count("remote_service_move_to_archive"));
    emit updateRequested(serviceOps, personalList);
    QTRY_COMPARE_WITH_TIMEOUT(sequence.count("remote_service_move_to_archive"), sent + 1, 30000);
}

void LoaderProbe::deleteOperation(int id, int remoteId)
{
    const int expected = reloads + 1;
    emit deleteRequested(id, remoteId);
    QVERIFY(waitForReloads(expected));
}

bool LoaderProbe::waitForReloads(int count)
{
    return QTest::qWaitFor([&] { return reloads >= count; }, 60000);
}

QJsonObject LoaderProbe::last(const QString &event) const
{
    for (auto it = messages.crbegin(); it != messages.crend(); ++it) {
        if (it->event == event)
            return it->data;
    }
    return {};
}

#pragma once

#include "data/garageupdater.h"

#include <QVector>

/// A statistics loader as the window and the host see it: what it sent, in order.
class LoaderProbe final : public QObject
{
    Q_OBJECT
public:
    struct Message
    {
        QString module;
        QString event;
        QJsonObject data;
    };

    LoaderProbe();

    /// Reloads and waits for the answer.
    void reload();
    void updateService(const QJsonArray &serviceOps, const QJsonArray &personalList = {});
    void deleteOperation(int id, int remoteId);
    /// Waits until that many reloads were delivered since construction.
    bool waitForReloads(int count);
    /// Ends the loader as its owner does.
    void destroyLoader() { m_loader.reset(); }

    /// Data of the last message of that event.
    QJsonObject last(const QString &event) const;
    /// Names of all messages, and "garageStatsUpdated", in order.
    QStringList sequence;
    QVector<Message> messages;
    int reloads = 0;
    QList<MaintainanceItem> cars;
    QList<ServiceLogItem> log;
    ServiceOperations operations;

signals:
    void reloadRequested();
    void updateRequested(QJsonArray serviceOps, QJsonArray personalList);
    void deleteRequested(int id, int remoteId);

private:
    std::unique_ptr<GarageUpdater> m_loader;
};

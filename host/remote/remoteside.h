#pragma once

#include "host/fleet/fleet.h"
#include "host/plugin/hostmessage.h"
#include "host/remote/remotestore.h"

#include <QObject>

#include <optional>

class HostConnection;
class PluginHost;

/// One line of the due list that the plug-in publishes.
struct PendingService
{
    int carId = -1;
    QString carNumber;
    QString carModel;
    int opId = -1;
    QString opName;
    QString since; // UTC, "yyyy-MM-ddThh:mm"
    int localId = -1;
};

/// What a check of the remote side's archive against the track's database found.
struct ArchiveFindings
{
    QString errorText; // why the check could not be made, or empty
    int archived = 0;
    QVector<int> missing; // archived here, no row there
    QVector<int> undead; // deleted here, a row there

    bool isGood() const { return errorText.isEmpty() && missing.isEmpty() && undead.isEmpty(); }
};

/// Stands in for the web service and the remote controls: keeps records of its own, takes what the plug-in
/// tells the remote side, and sends done work and availability requests.
class RemoteSide final : public QObject
{
    Q_OBJECT
public:
    enum class Channel { Service, RemoteControl };

    RemoteSide(const QString &recordsPath, HostConnection &track, PluginHost &plugin,
               QObject *parent = nullptr);

    /// Opens the records. An error text, or empty.
    QString prepare();

    const QVector<PendingService> &pending() const { return m_pending; }
    RemoteStore &store() { return m_store; }
    /// Operation names by id, as last announced.
    const QMap<int, QString> &operations() const { return m_operations; }

    /// Marks the work done now by the person and sends it. False if the track's database cannot be read.
    bool complete(const PendingService &work, const FleetPerson &by, const QString &comment, Channel channel);
    /// Sends everything that waits.
    void sendWaiting(Channel channel = Channel::Service);
    void switchAvailability(int carId);
    /// Whether work comes back to the track as soon as it is known here; otherwise it waits to be asked for.
    void setSendsAtOnce(bool atOnce) { m_sendsAtOnce = atOnce; }

    ArchiveFindings checkArchive();

signals:
    void pendingChanged();
    void recordsChanged();
    /// Something worth a line in the remote side's diary.
    void noted(const QString &text);

private:
    void take(const HostMessage &message);
    void takeRecord(const QJsonObject &data);
    void takeDeletion(const QJsonObject &data);
    void takeArchive(const QJsonObject &data);
    void takePending(const QJsonObject &data);
    void takeOperations(const QJsonObject &data);
    void takeAnswer(const QJsonObject &data);
    /// The number that people know the car by.
    QString carNumber(int carId);
    /// Nothing if the track's database cannot be read.
    std::optional<bool> isOpenAtTrack(int localId);

    RemoteStore m_store;
    HostConnection &m_track;
    PluginHost &m_plugin;
    QVector<PendingService> m_pending;
    QMap<int, QString> m_operations;
    bool m_sendsAtOnce = true;
    int m_lastSinkId = 0;
};

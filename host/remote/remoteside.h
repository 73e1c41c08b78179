#pragma once

#include "host/plugin/hostmessage.h"
#include "host/remote/remotestore.h"
#include "host/result.h"

#include <QObject>

#include <optional>

class HostConnection;
class PluginHost;
struct HostPerson;

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

/// Result of comparing the remote side's archive with the track's database.
struct ArchiveFindings
{
    QString errorText; // why the check could not be made, or empty
    int archived = 0;
    QVector<int> missing; // archived here, no row in the track's database
    QVector<int> notDeleted; // deleted here, a row in the track's database

    bool isGood() const { return errorText.isEmpty() && missing.isEmpty() && notDeleted.isEmpty(); }
};

/// Simulates the web service and the remote controls: stores records of its own, handles the plug-in's
/// messages to the remote side, sends completed services and availability requests.
class RemoteSide final : public QObject
{
    Q_OBJECT
public:
    enum class Channel { Service, RemoteControl };

    RemoteSide(const QString &recordsPath, HostConnection &track, PluginHost &plugin,
               QObject *parent = nullptr);

    /// Opens the records.
    Result prepare();

    const QVector<PendingService> &pending() const { return m_pending; }
    RemoteStore &store() { return m_store; }
    /// Operation names by id, as last announced.
    const QMap<int, QString> &operations() const { return m_operations; }

    /// The text of the open record that completing the service replaces; empty if there is none.
    QString storedText(const PendingService &work);
    /// Records the service as done now by the person and sends it. The comment replaces that of the open
    /// record. False if the track's database is unreadable.
    bool complete(const PendingService &work, const HostPerson &by, const QString &comment, Channel channel);
    /// Sends every waiting record in one message.
    void sendWaiting(Channel channel = Channel::Service);
    void switchAvailability(int carId);
    /// Whether completed services are sent at once or with the next sendWaiting().
    void setSendsAtOnce(bool atOnce) { m_sendsAtOnce = atOnce; }

    ArchiveFindings checkArchive();

signals:
    void pendingChanged();
    void recordsChanged();
    /// A line for the remote side's log.
    void logged(const QString &text);

private:
    void handleMessage(const HostMessage &message);
    /// Logs the error of a failed write to the records.
    void logFailure(const Result &result);
    /// The waiting records, or an empty list.
    void answerRequest();
    void handleRecord(const QJsonObject &data);
    void handleDeletion(const QJsonObject &data);
    void handleArchive(const QJsonObject &data);
    void handlePending(const QJsonObject &data);
    void handleOperations(const QJsonObject &data);
    void handleAnswer(const QJsonObject &data);
    /// The car's number, or a text with the id if the car is unknown.
    QString carNumber(int carId);
    /// Id of the track's latest record of that car, operation and UTC minute ("yyyy-MM-ddThh:mm"), or -1.
    int localIdOf(int carId, int opId, const QString &minute);
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

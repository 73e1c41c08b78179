#pragma once

#include "host/plugin/hostmessage.h"
#include "host/remote/remotestore.h"
#include "host/result.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <optional>

class HostConnection;
class PluginHost;
struct HostPerson;

/// What a kart has driven since the latest record of an operation.
struct DrivenSince
{
    int seconds = 0;
    int runs = 0;
    int laps = 0;
};

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
    std::optional<DrivenSince> driven;
};

/// A piece of work that somebody has done.
struct DoneWork
{
    int carId = -1;
    int opId = -1; // -1: a complaint
    int localId = -1; // the open record that it completes, if it still is open; -1: none
    QString doneTime; // UTC, "yyyy-MM-ddThh:mm:ss.zzzZ"; a time to come counts as now
    QString comment; // replaces that of the open record
    QString requestKey; // work with a key that is known is not recorded again; empty: none
};

/// What became of it.
struct RecordedWork
{
    enum Outcome { Stored, UnknownCar, UnknownOperation };

    Outcome outcome = Stored;
    int id = -1;
    RemoteRecord::State state = RemoteRecord::Waiting;
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
    /// Stores the work as done by the person, all of it or none, and sends what is new as soon as the track
    /// has archived what was sent before. Nothing if a database cannot be read or written, or is locked,
    /// which is not waited for; errorText() then says why.
    std::optional<QVector<RecordedWork>> recordWorks(const QVector<DoneWork> &works, const HostPerson &by);
    QString errorText() const { return m_errorText; }
    /// Records one service as done now, and sends it at once. False if it was not recorded.
    bool complete(const PendingService &work, const HostPerson &by, const QString &comment, Channel channel);
    /// Sends every waiting record in one message.
    void sendWaiting(Channel channel = Channel::Service);
    void switchAvailability(int carId);
    /// Switches the car unless it is, or soon will be, as wanted. Nothing if the track's database cannot be
    /// read; false if there is no such car.
    std::optional<bool> requestAvailability(int carId, bool available);
    /// Whether completed services are sent at once or with the next sendWaiting().
    void setSendsAtOnce(bool atOnce) { m_sendsAtOnce = atOnce; }

    ArchiveFindings checkArchive();

signals:
    void pendingChanged();
    void recordsChanged();
    /// A line for the remote side's log.
    void logged(const QString &text);

private:
    /// A switch that the plug-in has not answered yet.
    struct WantedAvailability
    {
        bool available = false;
        QElapsedTimer since;
    };

    /// What can be said about works before any of them is stored.
    struct KnownThings
    {
        QSet<int> cars;
        QHash<int, QString> operations;
    };

    /// The open record that a work names, if it is one of the same car and operation.
    struct OpenRecord
    {
        bool exists = false;
        QString text;
    };

    std::optional<KnownThings> readKnownThings();
    std::optional<QVector<RecordedWork>> store(const QVector<DoneWork> &works, const HostPerson &by);
    /// False if a database cannot be read or written.
    bool store(const DoneWork &work, const HostPerson &by, const KnownThings &known, RecordedWork &result);
    /// Keeps why the database could not be used.
    bool fail(const HostConnection &connection);
    void send(const QVector<RemoteRecord> &records, Channel channel);
    /// Sends what waits unless the track still has records to archive.
    void sendWhenArchived();
    void sendAgain();
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
    std::optional<OpenRecord> openRecord(const DoneWork &work);

    RemoteStore m_store;
    HostConnection &m_track;
    PluginHost &m_plugin;
    QVector<PendingService> m_pending;
    QMap<int, QString> m_operations;
    QSet<int> m_underWay; // sent in this run of the program and not archived
    QTimer m_resendTimer;
    QHash<int, WantedAvailability> m_wanted; // by car
    QString m_errorText;
    bool m_sendsAtOnce = true;
    int m_lastSinkId = 0;
};

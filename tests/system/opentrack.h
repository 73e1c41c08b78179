#pragma once

#include "trackledger.h"

#include "host/app/demohost.h"
#include "host/database/datafolder.h"

#include <QDate>
#include <QRandomGenerator>

#include <memory>

class QDialog;
class QModelIndex;
class QTreeView;
class QWidget;

/// One day at a track in the past: the demo host with the finished library, from its start to its end. The
/// sides act through host, window and page, and the ledger is told what they did. After each action that
/// causes a reload its message is compared with the ledger.
class OpenTrack final : public QObject
{
    Q_OBJECT
public:
    OpenTrack(TrackLedger &ledger, QRandomGenerator &random, const QDate &date);
    ~OpenTrack() override;

    /// What differed from the ledger.
    QStringList findings() const { return m_findings; }
    int reloads() const { return m_reloadsTold; }

    // Drivers
    enum Half { Morning, Afternoon };
    /// Half of the opening hours.
    void drive(Half half);
    /// "run_saved_to_db".
    void announceRuns();

    // Mechanic, in the window and on the page, which must be shown
    void showWindow();
    void recordService();
    void complain();
    void requestWork();
    void markDone();
    void deleteRecord();
    void changeLimits();
    void renameOperation();
    /// Removes the first operation and adds another, with limits.
    void replaceOperation();

    // Remote side
    /// Every operation that a kart has no record of, done on every kart.
    void tickOffUnrecorded();
    /// Most of what is due, and some work of no operation.
    void tickOffDue();
    /// The batch of the latest tickOff...(), once more.
    void repeatBatch();
    /// Some of what is due. Does not wait for the answer, which the end of the host loses.
    void tickOffLate();
    void switchKart();

    // Comparisons with the ledger
    void compareWindow();
    void compareFile();
    void compareRemoteSide();

    struct ReloadTime
    {
        double clock; // milliseconds from the message to the filled tables
        double computing; // milliseconds of the process
    };
    ReloadTime timeReload();

public slots:
    void countReload() { ++m_reloadsAsked; }

private:
    struct Work
    {
        int carId;
        int opId;
        int localId; // of the latest record, which may be open
    };

    void setUpWindow();
    void handleMessage(const HostMessage &message);
    /// Waits until nothing is under way, then compares the latest message.
    void settle();
    void note(const QString &what, const QString &found, const QString &expected);
    void compare(const char *what, const QStringList &found, const QStringList &expected);
    void compare(const char *what, const QJsonArray &found, const QJsonArray &expected);

    void recordRun(qint64 start);
    std::vector<int> availableKarts() const;
    std::vector<int> chooseKarts();
    /// Fills in the dialog of services and complaints, and stores what was entered in the ledger's record.
    void enter(QDialog &dialog, TrackLedger::Record &record);
    void openRecord(int opId);
    QTreeView *operationsInFront();
    void enterLimits(const QString &model, int opId, const TrackLedger::Limits &limits);
    std::vector<Work> dueWorks() const;
    void tickOff(const std::vector<Work> &works);
    int storeWork(const Work &work, int personId);

    bool isOpenWork(const TrackLedger::Record &record) const;
    QModelIndex maintenanceCell(int carId, const QString &title);
    QModelIndex logCell(int recordId);
    qint64 nextMinute();
    qint64 recentMoment();
    int below(int bound) { return int(m_random.bounded(quint32(bound))); }
    int anyOperation() { return m_ledger.operations().keys().at(below(int(m_ledger.operations().size()))); }
    int anyKart() { return 1 + below(m_ledger.kartCount()); }

    TrackLedger &m_ledger;
    QRandomGenerator &m_random;
    const DataFolder m_documents;
    DemoHost m_host;
    std::unique_ptr<LapRecorder> m_recorder;
    QWidget *m_window = nullptr;
    QWidget *m_page = nullptr;
    const qint64 m_morning; // milliseconds since the epoch
    qint64 m_now;
    HostMessage m_lastBatch; // of the remote side
    HostMessage m_lastStatistics;
    int m_savedRun = TrackLedger::none;
    int m_reloadsAsked = 0;
    int m_reloadsTold = 0;
    QStringList m_findings;
};

#pragma once

#include <QJsonArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

/// What each side did at a track, kept in plain containers as it happens and independently of the module: no
/// SQL, none of its code. Times are milliseconds since the epoch, UTC; ids are those of the file.
class TrackLedger final
{
public:
    static constexpr int none = -1;
    static constexpr int complaint = -1; ///< as an operation id

    struct Kart
    {
        QString number;
        QString model;
        bool isAvailable = true;
    };
    struct Limits
    {
        int seconds = 0;
        int runs = 0;
        int laps = 0;
    };
    struct Record
    {
        int carId = none;
        int opId = complaint;
        qint64 time = 0;
        int personId = none;
        int comment = 0; ///< each has a number of its own
        int remoteId = none;
        bool isOpen = false;
        bool exists = true;
    };

    /// Takes the memory for that many days at once, so that the ledger itself does not grow.
    explicit TrackLedger(int days);

    /// Karts, people and operations get the ids 1, 2, 3 …
    void addKart(const Kart &kart);
    void addPerson(const QString &name) { m_people.append(name); }
    int addOperation(const QString &name);
    void renameOperation(int id, const QString &name) { m_operations[id] = name; }
    /// Its limits stay in the file.
    void removeOperation(int id) { m_operations.remove(id); }
    void setLimits(const QString &model, int opId, const Limits &limits);
    void switchKart(int id);

    int startRun() { return ++m_lastRun; }
    /// Laps of a kart come in the order of their times.
    void addLap(int carId, int runId, qint64 finished, int milliseconds);

    int newComment() { return ++m_lastComment; }
    /// Returns the id that the file gives it.
    int addRecord(const Record &record);
    Record &record(int id) { return m_records[size_t(id)]; }
    const Record &record(int id) const { return m_records[size_t(id)]; }
    void removeRecord(int id) { record(id).exists = false; }
    int lastRecord() const { return int(m_records.size()) - 1; }
    int recordCount() const;
    /// The id of the latest record, or none.
    int latest(int carId, int opId) const;
    /// The ids of the existing records, the latest first.
    std::vector<int> journal() const;
    bool isUsed(qint64 time) const;

    int kartCount() const { return int(m_karts.size()); }
    const Kart &kart(int id) const { return m_karts.at(id - 1); }
    int personCount() const { return int(m_people.size()); }
    const QMap<int, QString> &operations() const { return m_operations; }
    QStringList models() const;
    Limits limits(const QString &model, int opId) const { return m_limits.value(model).value(opId); }
    int lapCount() const;

    static QString commentText(int comment) { return QString("запись %1").arg(comment); }
    static QString fileTime(qint64 time);
    static QString shownTime(qint64 time);

    // What the host is told with "update_pending_service".
    QJsonArray statuses() const;
    QJsonArray pending() const;

    // What the window shows, as texts.
    QStringList maintenanceTitles() const;
    /// Without the row number: "model|number|cell|cell…".
    QStringList maintenanceRows() const;
    QStringList numbersToService() const;
    QStringList numbers() const;
    QStringList numbersAvailable() const;
    QStringList logRows(int most) const;

    // What the file holds, as texts.
    QStringList recordRows() const;
    QStringList limitRows() const;
    /// "car|laps|milliseconds|runs".
    QStringList lapRows() const;

private:
    /// A lap with the sums of the kart's driving up to it.
    struct Lap
    {
        qint64 finished;
        qint64 milliseconds;
        int run;
        int runs;
    };
    struct Driving
    {
        int seconds = 0;
        int runs = 0;
        int laps = 0;
    };

    Driving drivenSince(int carId, qint64 time) const;
    bool isDue(int carId, int recordId) const;
    bool needsService(int carId) const;
    std::vector<int> latestOfEach(int carId) const;
    QJsonObject pendingOf(int carId, int recordId, const QString &name) const;
    QString cell(int carId, int opId) const;
    QString personName(int id) const { return id == none ? QString() : m_people.at(id - 1); }

    QVector<Kart> m_karts;
    QStringList m_people;
    QMap<int, QString> m_operations;
    QMap<QString, QMap<int, Limits>> m_limits;
    std::vector<Record> m_records; // by id; that with the id 0 does not exist
    std::vector<QMap<int, std::vector<int>>> m_recordsOf; // ids by kart and operation
    std::vector<std::vector<Lap>> m_laps; // by kart
    size_t m_lapsPerKart;
    int m_lastOperation = 0;
    int m_lastRun = 0;
    int m_lastComment = 0;
};

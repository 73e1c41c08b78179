#include "garagectl/audit/audit.h"

#include "garagectl/audit/exchange.h"
#include "garagectl/wording.h"

#include <QMap>
#include <QSet>

#include <algorithm>
#include <limits>

namespace {

using Row = StoredRecords::Row;

QString atLine(int line, const QString &what)
{
    return text("line %1: %2", "строка %1: %2").arg(QString::number(line), what);
}

QString remoteText(qint64 remoteId)
{
    return QStringLiteral("id %1").arg(remoteId);
}

QString localText(qint64 localId)
{
    return QStringLiteral("localId %1").arg(localId);
}

QString contentText(int carId, int opId, const QString &time)
{
    return QStringLiteral("carId %1, opId %2, %3").arg(QString::number(carId), QString::number(opId), time);
}

/// The message gives the remote id in 32 bits, beyond which it is -1.
bool mayMean(const Exchange::Deletion &deletion, const RemoteServiceRecord &record)
{
    const bool isWide = record.remoteId > std::numeric_limits<int>::max();
    return deletion.remoteId == (isWide ? noId : record.remoteId)
        || (record.localId != noId && deletion.localId == record.localId);
}

class Comparison final
{
public:
    Comparison(const MessageLog &log, const StoredRecords &stored)
        : m_log(log), m_stored(stored), m_exchange(Exchange::from(log))
    {
    }

    Findings run();

private:
    void compareArchived();
    void compareRecord(const Exchange::Record &record);
    void compareArchivedWithoutBatch();
    void compareDeletions();
    void findRepeatedRemoteIds();
    void findRepeatedWork();
    void findUnansweredBatches();
    void findUnansweredCompletions();
    QVector<Exchange::Record> latestRecords() const;
    bool isDeletedLater(const Exchange::Record &record) const;
    void add(const char *id, const QString &example) { m_examples[QString::fromLatin1(id)].append(example); }

    const MessageLog &m_log;
    const StoredRecords &m_stored;
    const Exchange m_exchange;
    QMap<QString, QStringList> m_examples; ///< by the finding's id
};

Findings Comparison::run()
{
    if (m_log.messages.isEmpty())
        add("no-messages", {});
    for (const QString &line : m_log.malformedLines)
        add("malformed-line", line);
    compareArchived();
    compareArchivedWithoutBatch();
    compareDeletions();
    findRepeatedRemoteIds();
    findRepeatedWork();
    findUnansweredBatches();
    findUnansweredCompletions();
    for (const QString &request : unansweredRequests(m_log))
        add("request-unanswered", request);

    Findings findings;
    for (const FindingText &kind : Audit::catalogue()) {
        const QStringList examples = m_examples.value(QString::fromLatin1(kind.id));
        if (!examples.isEmpty())
            findings.append(kind.finding(examples.size(), examples));
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding &a, const Finding &b) { return a.severity < b.severity; });
    return findings;
}

/// A record that is sent again replaces what was sent under its id. Those without an id are each one.
QVector<Exchange::Record> Comparison::latestRecords() const
{
    QVector<Exchange::Record> latest;
    QHash<qint64, int> indexes;
    for (const Exchange::Record &record : m_exchange.archivedRecords()) {
        const qint64 id = record.content.remoteId;
        if (id != noId && indexes.contains(id)) {
            latest[indexes.value(id)] = record;
            continue;
        }
        indexes.insert(id, int(latest.size()));
        latest.append(record);
    }
    return latest;
}

bool Comparison::isDeletedLater(const Exchange::Record &record) const
{
    return std::any_of(m_exchange.deletions.cbegin(), m_exchange.deletions.cend(),
                       [&record](const Exchange::Deletion &deletion) {
                           return deletion.line > record.line && mayMean(deletion, record.content);
                       });
}

void Comparison::compareArchived()
{
    for (const Exchange::Record &record : latestRecords()) {
        if (!isDeletedLater(record))
            compareRecord(record);
    }
}

void Comparison::compareRecord(const Exchange::Record &record)
{
    const RemoteServiceRecord &content = record.content;
    const QVector<const Row *> rows = m_stored.matching(content);
    const auto holders =
        std::count_if(rows.cbegin(), rows.cend(), [&content](const Row *row) { return row->holds(content); });
    const QString sent = remoteText(content.remoteId) + QLatin1String(", ")
        + contentText(content.carId, content.opId, content.opTime);
    if (rows.isEmpty()) {
        add("archived-not-stored", atLine(record.line, sent));
    } else if (holders == 0) {
        const Row &row = *rows.first();
        add("overwritten",
            atLine(record.line, sent)
                + text("; stored: %1, ", "; сохранено: %1, ").arg(localText(row.localId))
                + contentText(row.carId, row.opId, row.time));
    } else if (holders > 1 && m_stored.byRemoteId(content.remoteId).size() < 2) {
        add("stored-twice", atLine(record.line, sent)); // under its remote id, and in the row of its local id
    }
}

void Comparison::compareArchivedWithoutBatch()
{
    for (const Exchange::Archived &archived : m_exchange.archivedWithoutBatch) {
        RemoteServiceRecord content;
        content.remoteId = archived.remoteId;
        if (m_stored.byRemoteId(archived.remoteId).isEmpty() && !isDeletedLater({archived.line, content}))
            add("archived-unknown", atLine(archived.line, remoteText(archived.remoteId)));
    }
}

void Comparison::compareDeletions()
{
    for (const Exchange::Deletion &deletion : m_exchange.deletions) {
        if (m_stored.byLocalId(deletion.localId))
            add("deleted-still-stored", atLine(deletion.line, localText(deletion.localId)));
    }
}

void Comparison::findRepeatedRemoteIds()
{
    QSet<qint64> reported;
    for (const Row &row : m_stored.rows()) {
        const int rows = row.isRemote ? int(m_stored.byRemoteId(row.remoteId).size()) : 0;
        if (rows < 2 || row.remoteId == noId || reported.contains(row.remoteId))
            continue;
        reported.insert(row.remoteId);
        add("stored-twice",
            text("%1 in %2 rows", "%1 в строках: %2").arg(remoteText(row.remoteId), QString::number(rows)));
    }
}

/// A service recorded in the window that came back from the remote side as a new record.
void Comparison::findRepeatedWork()
{
    for (const Exchange::Announcement &work : m_exchange.recorded) {
        const QVector<const Row *> rows = m_stored.inMinute(work.carId, work.opId, work.minute);
        const bool hasLocal =
            std::any_of(rows.cbegin(), rows.cend(), [](const Row *row) { return !row->isRemote; });
        const bool hasRemote =
            std::any_of(rows.cbegin(), rows.cend(), [](const Row *row) { return row->isRemote; });
        if (hasLocal && hasRemote)
            add("stored-twice", atLine(work.line, contentText(work.carId, work.opId, work.minute)));
    }
}

void Comparison::findUnansweredBatches()
{
    for (const Exchange::Batch &batch : m_exchange.batches) {
        if (batch.isArchived || m_log.endsSoonAfter(batch.message))
            continue;
        QStringList ids;
        for (const Exchange::Record &record : batch.records)
            ids.append(remoteText(record.content.remoteId));
        add("batch-unanswered", atLine(batch.message.line, ids.join(QLatin1String(", "))));
    }
}

void Comparison::findUnansweredCompletions()
{
    QMap<int, int> lastLineOf; ///< of a message that brought the record, by local id
    for (const Exchange::Batch &batch : m_exchange.batches) {
        for (const Exchange::Record &record : batch.records)
            lastLineOf.insert(record.content.localId, record.line);
    }
    for (const Exchange::Announcement &completed : m_exchange.completed) {
        const Row *row = m_stored.byLocalId(completed.localId);
        const bool isOpen = row && row->state == OpenState;
        if (isOpen && lastLineOf.value(completed.localId) < completed.line)
            add("completion-unanswered", atLine(completed.line, localText(completed.localId)));
    }
}

} // namespace

Findings Audit::compare(const MessageLog &log, const StoredRecords &stored)
{
    return Comparison(log, stored).run();
}

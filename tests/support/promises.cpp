#include "support/promises.h"

#include <algorithm>

namespace {

constexpr char operationsVerb[] = "operations ";

} // namespace

Promises::Stored Promises::stored(const Select &select)
{
    const auto set = [&select](const char *statement) {
        const QList<QByteArray> rows = select(statement);
        return QSet<QByteArray>(rows.cbegin(), rows.cend());
    };
    Stored stored;
    stored.integrity = QString::fromUtf8(select("PRAGMA integrity_check").join(' '));
    stored.comments = set("SELECT comment FROM maintainance");
    stored.operations =
        select("SELECT id||':'||operation_name||';' FROM service_operations ORDER BY id").join();
    stored.runs = set("SELECT DISTINCT run_id FROM laps");
    stored.tornWrites = int(select("SELECT run_id FROM laps GROUP BY run_id HAVING count(*)<>3 "
                                   "UNION ALL SELECT model FROM service_reglament "
                                   "WHERE laps_limit<>runs_limit OR time_limit<>3600*runs_limit")
                                .size());
    return stored;
}

Promises::Promises(const QVector<QByteArray> &notes) : m_notes(notes)
{
}

void Promises::advance()
{
    const QByteArray note = m_notes.at(m_count++);
    QList<QByteArray> words = note.split(' ');
    const QByteArray verb = words.takeFirst();
    if (verb == "batch") {
        m_batches.append(words);
    } else if (verb == "archived" || verb == "service") {
        for (const QByteArray &comment : qAsConst(words))
            expect(comment, note);
    } else if (verb == "changing") {
        m_changing.insert(words.first());
        m_present.remove(words.first());
    } else if (verb == "deleted") {
        m_gone.insert(words.first(), note);
    } else if (verb == "laps") {
        m_runs.append(words.first());
    } else if (verb == "operations") {
        m_operations = note.mid(int(sizeof(operationsVerb)) - 1);
        const auto isOperations = [](const QByteArray &later) { return later.startsWith(operationsVerb); };
        const auto next = std::find_if(m_notes.cbegin() + m_count, m_notes.cend(), isOperations);
        m_nextOperations = next == m_notes.cend() ? QByteArray() : next->mid(int(sizeof(operationsVerb)) - 1);
    }
}

void Promises::expect(const QByteArray &comment, const QByteArray &announcement)
{
    if (!m_changing.contains(comment))
        m_present.insert(comment, announcement);
}

QStringList Promises::faults(const Stored &stored) const
{
    QStringList faults;
    if (stored.integrity != "ok")
        faults.append("integrity: " + stored.integrity);
    if (stored.tornWrites > 0)
        faults.append(QString("%1 runs or limits in part").arg(stored.tornWrites));
    for (const QList<QByteArray> &batch : m_batches) {
        const auto isStored = [&stored](const QByteArray &comment) {
            return stored.comments.contains(comment);
        };
        const auto isChanging = [this](const QByteArray &comment) { return m_changing.contains(comment); };
        const auto count = std::count_if(batch.cbegin(), batch.cend(), isStored);
        if (count != 0 && count != batch.size() && std::none_of(batch.cbegin(), batch.cend(), isChanging))
            faults.append("in part: " + QString::fromUtf8(batch.join(' ')));
    }
    return faults;
}

QStringList Promises::broken(const Stored &stored) const
{
    QSet<QByteArray> broken;
    for (auto record = m_present.cbegin(); record != m_present.cend(); ++record) {
        if (!stored.comments.contains(record.key()))
            broken.insert(record.value());
    }
    for (auto record = m_gone.cbegin(); record != m_gone.cend(); ++record) {
        if (stored.comments.contains(record.key()))
            broken.insert(record.value());
    }
    if (!m_operations.isEmpty() && stored.operations != m_operations && stored.operations != m_nextOperations)
        broken.insert(QByteArray(operationsVerb) + m_operations);
    QStringList announcements;
    for (const QByteArray &announcement : qAsConst(broken))
        announcements.append(QString::fromUtf8(announcement));
    return announcements;
}

int Promises::missingRuns(const Stored &stored) const
{
    return int(std::count_if(m_runs.cbegin(), m_runs.cend(),
                             [&stored](const QByteArray &run) { return !stored.runs.contains(run); }));
}

#include "garagectl/fleet/explanation.h"

#include "data/duerule.h"
#include "garagectl/fleet/dueoutput.h"
#include "garagectl/output/textwidth.h"
#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

#include <QJsonArray>

namespace {

QString quoted(const QString &content)
{
    return text("\"%1\"", "«%1»").arg(TextWidth::printable(content));
}

QString subject(const DueRow &row)
{
    const QString operation =
        row.opId == complaintOperationId ? text("complaint", "жалоба") : DueOutput::operationText(row);
    // All at once: a name may hold "%1".
    return text("Kart %1 (%2, id %3), %4 (operation %5).", "Карт %1 (%2, код %3), %4 (операция %5).")
        .arg(TextWidth::printable(row.carNumber), TextWidth::printable(row.carModel),
             QString::number(row.carId), quoted(operation), QString::number(row.opId));
}

QString recordSentence(const Derivation &derivation)
{
    const DueRow &row = derivation.row;
    if (!row.isRecorded)
        return text("It was never recorded for this kart, so there is nothing to count from.",
                    "Для этого карта её ни разу не записывали: считать не от чего.");
    const QString state = row.stat.state == OpenState ? text("open", "открыта") : text("done", "сделана");
    QString sentence = text("The latest record is %1 of %2, by %3, %4; comment %5.",
                            "Последняя запись — №%1 от %2, исполнитель %3, %4; примечание %5.")
                           .arg(row.stat.localId)
                           .arg(TimeText::forPeople(row.stat.lastDone.toLocalTime()),
                                quoted(derivation.person), state, quoted(row.stat.comment));
    if (derivation.recordCount > 1)
        sentence += text(" It is the latest of %1 records because its time, %2, is the greatest as a text.",
                         " Она последняя из %1, потому что её время, %2, как текст больше остальных.")
                        .arg(derivation.recordCount)
                        .arg(quoted(derivation.latestTime));
    if (derivation.latestCount > 1)
        sentence += text(" %1 records have this same time; the database chose one of them.",
                         " Это время стоит у записей: %1; одну из них выбрала база.")
                        .arg(derivation.latestCount);
    if (!row.stat.lastDone.isValid())
        sentence += text(" Its time cannot be read as a date.", " Её время не читается как дата.");
    return sentence;
}

QString countedSentence(const Derivation &derivation, const LapGroup &group)
{
    const DueRow &row = derivation.row;
    QString sentence =
        text("Since then %1 laps in %2 runs count, %3 (%4 s), the first at %5, the last at %6.",
             "С тех пор считается кругов: %1, заездов: %2, %3 (%4 с), первый круг %5, последний %6.")
            .arg(row.stat.laps)
            .arg(row.stat.runs)
            .arg(DueOutput::amount(Meters::Seconds, row.stat.totalTime))
            .arg(row.stat.totalTime)
            .arg(TextWidth::printable(group.first), TextWidth::printable(group.last));
    if (group.unreadable > 0)
        sentence += text(" %1 of them have a time that is no date, but is greater as a text.",
                         " У %1 из них время — не дата, но как текст оно больше.")
                        .arg(group.unreadable);
    return sentence;
}

QString lapSentence(const Derivation &derivation, const LapGroup &group)
{
    switch (group.verdict) {
    case LapVerdict::Counted:
        return countedSentence(derivation, group);
    case LapVerdict::TimeUnreadable:
        return text("%1 laps do not count: their time is no date and time (for example %2).",
                    "Не считается кругов: %1 — их время не дата со временем (например, %2).")
            .arg(group.laps)
            .arg(quoted(group.last));
    case LapVerdict::NoLapTime:
        return text("%1 laps do not count: their lap time is missing, zero, or negative.",
                    "Не считается кругов: %1 — время круга не указано, ноль или меньше нуля.")
            .arg(group.laps);
    case LapVerdict::BeforeRecord:
        return text("%1 laps do not count: they were driven before the record or exactly at its time (the "
                    "last at %2).",
                    "Не считается кругов: %1 — они пройдены до записи или ровно в её время (последний %2).")
            .arg(group.laps)
            .arg(TextWidth::printable(group.last));
    }
    return {};
}

QStringList lapSentences(const Derivation &derivation)
{
    QStringList sentences;
    if (derivation.row.isRecorded && derivation.row.stat.laps == 0)
        sentences.append(text("No lap counts since then.", "С тех пор не считается ни один круг."));
    for (const LapGroup &group : derivation.laps)
        sentences.append(lapSentence(derivation, group));
    return sentences;
}

QString comparison(const DueRow &row, Meters::Meter meter)
{
    const int driven = Meters::driven(row.stat, meter);
    const int limit = Meters::limit(row.limits, meter);
    const QString outcome =
        driven > limit ? text("exceeded", "превышен") : text("not exceeded", "не превышен");
    QString sentence = text("Limit %1: %2 driven, %3.", "Лимит %1: пройдено %2, %3.")
                           .arg(DueOutput::amount(meter, limit), DueOutput::amount(meter, driven), outcome);
    if (driven == limit)
        sentence += text(" Exactly the limit is not more than it.", " Ровно лимит — ещё не больше.");
    return sentence;
}

QStringList comparisons(const DueRow &row)
{
    if (row.opId == complaintOperationId && !row.limits.hasAny())
        return {};
    if (!row.limits.hasAny())
        return {text("There is no limit for this operation and model.",
                     "Лимитов этой операции для этой модели нет.")};
    QStringList sentences;
    for (const Meters::Meter meter : Meters::all) {
        if (Meters::limit(row.limits, meter) != 0)
            sentences.append(comparison(row, meter));
    }
    return sentences;
}

QString verdict(const DueRow &row)
{
    switch (row.state) {
    case DueState::Open:
        return text("Verdict: open, because its latest record is not done yet.",
                    "Итог: открыто, потому что последняя запись ещё не выполнена.");
    case DueState::Due:
        return text("Verdict: due, because a limit is exceeded.",
                    "Итог: пора делать, потому что превышен лимит.");
    case DueState::Soon:
        return text("Verdict: not due yet, but soon.", "Итог: ещё не пора, но скоро.");
    case DueState::Ok:
        return text("Verdict: not due.", "Итог: делать не пора.");
    case DueState::Never:
        return text("Verdict: never due until it is recorded for the first time.",
                    "Итог: срок не наступит, пока операцию не запишут в первый раз.");
    }
    return {};
}

bool isRed(const DueRow &row)
{
    return row.isRecorded && DueRule::isDue(row.stat, row.limits);
}

QString windowSentence(const Derivation &derivation)
{
    const DueRow &row = derivation.row;
    QStringList parts;
    if (row.opId != complaintOperationId) {
        parts.append(!row.isRecorded ? text("the cell of the operation is empty", "ячейка операции пустая")
                         : isRed(row) ? text("the lower half of the operation's cell is red",
                                             "нижняя половина ячейки операции красная")
                                      : text("the lower half of the operation's cell is green",
                                             "нижняя половина ячейки операции зелёная"));
    }
    if (row.isRecorded && row.stat.state == OpenState)
        parts.append(text("the model and the number of the kart are red", "модель и номер карта красные"));
    parts.append(derivation.isListedByFilter
                     ? text("the filter «Требуется сервис» lists the kart for it",
                            "фильтр «Требуется сервис» показывает карт из-за неё")
                     : text("the filter «Требуется сервис» does not list the kart for it",
                            "фильтр «Требуется сервис» из-за неё карт не показывает"));
    return text("In the window («Техника»): %1.", "В окне («Техника»): %1.")
        .arg(parts.join(QLatin1String("; ")));
}

QString messageSentence(const DueRow &row)
{
    return row.isPending
        ? text("In the message to the host (update_pending_service): listed in servicePendingList.",
               "В сообщении программе хронометража (update_pending_service): есть в servicePendingList.")
        : text("In the message to the host (update_pending_service): not listed in servicePendingList.",
               "В сообщении программе хронометража (update_pending_service): в servicePendingList её нет.");
}

QString key(LapVerdict verdict)
{
    switch (verdict) {
    case LapVerdict::Counted:
        return QStringLiteral("counted");
    case LapVerdict::TimeUnreadable:
        return QStringLiteral("timeUnreadable");
    case LapVerdict::NoLapTime:
        return QStringLiteral("noLapTime");
    case LapVerdict::BeforeRecord:
        return QStringLiteral("beforeRecord");
    }
    return {};
}

QJsonArray lapsJson(const QVector<LapGroup> &groups)
{
    QJsonArray laps;
    for (const LapGroup &group : groups) {
        laps.append(QJsonObject {{QStringLiteral("verdict"), key(group.verdict)},
                                 {QStringLiteral("laps"), group.laps},
                                 {QStringLiteral("runs"), group.runs},
                                 {QStringLiteral("unreadable"), group.unreadable},
                                 {QStringLiteral("first"), group.first},
                                 {QStringLiteral("last"), group.last}});
    }
    return laps;
}

QJsonArray comparisonsJson(const DueRow &row)
{
    QJsonArray array;
    for (const Meters::Meter meter : Meters::all) {
        const int limit = Meters::limit(row.limits, meter);
        if (limit == 0)
            continue;
        array.append(QJsonObject {{QStringLiteral("meter"), DueOutput::key(meter)},
                                  {QStringLiteral("driven"), Meters::driven(row.stat, meter)},
                                  {QStringLiteral("limit"), limit},
                                  {QStringLiteral("exceeded"), Meters::driven(row.stat, meter) > limit}});
    }
    return array;
}

} // namespace

QStringList Explanation::sentences(const Derivation &derivation)
{
    QStringList all {subject(derivation.row), recordSentence(derivation)};
    all += lapSentences(derivation);
    all += comparisons(derivation.row);
    all += {verdict(derivation.row), windowSentence(derivation), messageSentence(derivation.row)};
    return all;
}

QJsonObject Explanation::json(const Derivation &derivation)
{
    const DueRow &row = derivation.row;
    QJsonObject object = DueOutput::json(row);
    object.insert(QStringLiteral("records"), derivation.recordCount);
    object.insert(QStringLiteral("recordsOfLatestTime"), derivation.latestCount);
    object.insert(QStringLiteral("latestTime"),
                  row.isRecorded ? QJsonValue(derivation.latestTime) : QJsonValue());
    object.insert(QStringLiteral("person"), derivation.person);
    object.insert(QStringLiteral("lapGroups"), lapsJson(derivation.laps));
    object.insert(QStringLiteral("comparisons"), comparisonsJson(row));
    object.insert(QStringLiteral("redInWindow"), isRed(row));
    object.insert(QStringLiteral("listedByFilter"), derivation.isListedByFilter);
    object.insert(QStringLiteral("sentences"), QJsonArray::fromStringList(sentences(derivation)));
    return object;
}

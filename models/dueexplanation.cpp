#include "models/dueexplanation.h"

#include "data/datetimetext.h"
#include "data/duerule.h"
#include "models/plaintext.h"

#include <cmath>

namespace {

// So that several complaints fit in one tool tip.
constexpr int mostCommentLines = 6;
constexpr int commentLineLength = 56;

QString number(qint64 value)
{
    return QString::number(value);
}

QString dateAndPerson(const OperationStat &stat, const ServiceLogItem *record)
{
    QStringList parts {DateTimeText::forDisplay(stat.lastDone.toLocalTime()),
                       record ? record->personName.simplified() : QString()};
    parts.removeAll(QString());
    return parts.join(QLatin1String(", "));
}

} // namespace

QStringList DueExplanation::limitLines(const OperationStat &stat, const Limits &limits)
{
    QStringList lines;
    const auto append = [&lines](const QString &name, int counter, int counterLimit, auto text) {
        const std::optional<qint64> excess = DueRule::excess(counter, counterLimit);
        if (!excess)
            return;
        //: what is counted, the counter, its limit, the difference
        const QString line =
            *excess > 0 ? tr("%1: %2 из %3, превышено на %4") : tr("%1: %2 из %3, осталось %4");
        lines.append(line.arg(name, text(counter), text(counterLimit), text(std::abs(*excess))));
    };
    append(tr("Время"), stat.totalTime, limits.seconds, duration);
    append(tr("Заезды"), stat.runs, limits.runs, number);
    append(tr("Круги"), stat.laps, limits.laps, number);
    if (lines.isEmpty())
        lines.append(tr("Лимиты не заданы"));
    return lines;
}

QStringList DueExplanation::limitLines(const Limits &limits)
{
    QStringList lines;
    const auto append = [&lines](const QString &name, int counterLimit, auto text) {
        if (counterLimit != 0)
            lines.append(tr("%1: лимит %2").arg(name, text(counterLimit)));
    };
    append(tr("Время"), limits.seconds, duration);
    append(tr("Заезды"), limits.runs, number);
    append(tr("Круги"), limits.laps, number);
    if (lines.isEmpty())
        lines.append(tr("Лимиты не заданы"));
    lines.append(tr("Работа не записана"));
    return lines;
}

QString DueExplanation::lastWork(const OperationStat &stat, const ServiceLogItem *record)
{
    const QString text = stat.state == OpenState ? tr("Задание: %1") : tr("Последняя работа: %1");
    return text.arg(dateAndPerson(stat, record));
}

QString DueExplanation::openWork(const OperationStat &stat, const ServiceLogItem *record)
{
    const bool isComplaint = stat.opId == complaintOperationId;
    QStringList parts {isComplaint ? tr("Жалоба") : tr("Задание"),
                       record ? record->opName.simplified() : QString(), dateAndPerson(stat, record)};
    parts.removeAll(QString());
    QString heading = parts.join(QLatin1String(", "));
    if (stat.comment.isEmpty())
        return heading;
    return heading + QLatin1Char('\n')
        + PlainText::firstLines(stat.comment, mostCommentLines, commentLineLength);
}

QString DueExplanation::duration(qint64 seconds)
{
    const qint64 length = std::abs(seconds);
    const qint64 hours = length / 3600;
    const qint64 minutes = length / 60 % 60;
    QStringList parts;
    if (hours > 0)
        parts.append(tr("%1 ч").arg(hours));
    if (minutes > 0)
        parts.append(tr("%1 мин").arg(minutes));
    if (parts.isEmpty())
        parts.append(length == 0 ? tr("0 ч") : tr("%1 с").arg(length));
    return (seconds < 0 ? QStringLiteral("-") : QString()) + parts.join(QLatin1Char(' '));
}

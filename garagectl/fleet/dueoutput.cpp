#include "garagectl/fleet/dueoutput.h"

#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

namespace {

const QString dash(QChar(0x2014));

TextTable::Tone toneOf(DueState state)
{
    switch (state) {
    case DueState::Open:
    case DueState::Due:
        return TextTable::Bad;
    case DueState::Soon:
        return TextTable::Warning;
    case DueState::Ok:
        return TextTable::Good;
    case DueState::Never:
        return TextTable::Faint;
    }
    return TextTable::Plain;
}

} // namespace

QString DueOutput::key(DueState state)
{
    switch (state) {
    case DueState::Open:
        return QStringLiteral("open");
    case DueState::Due:
        return QStringLiteral("due");
    case DueState::Soon:
        return QStringLiteral("soon");
    case DueState::Ok:
        return QStringLiteral("ok");
    case DueState::Never:
        return QStringLiteral("never");
    }
    return {};
}

QString DueOutput::key(Meters::Meter meter)
{
    switch (meter) {
    case Meters::Seconds:
        return QStringLiteral("seconds");
    case Meters::Runs:
        return QStringLiteral("runs");
    case Meters::Laps:
        return QStringLiteral("laps");
    }
    return {};
}

QJsonObject DueOutput::json(const DueRow &row)
{
    QJsonObject limits;
    QJsonObject left;
    for (const Meters::Meter meter : Meters::all) {
        limits.insert(key(meter), Meters::limit(row.limits, meter));
        if (const std::optional<qint64> amountLeft = Meters::left(row.stat, row.limits, meter))
            left.insert(key(meter), *amountLeft);
    }
    const std::optional<Meters::Share> share = Meters::largestShare(row.stat, row.limits);
    return {{QStringLiteral("carId"), row.carId},
            {QStringLiteral("carNumber"), row.carNumber},
            {QStringLiteral("carModel"), row.carModel},
            {QStringLiteral("operationId"), row.opId},
            {QStringLiteral("operation"), row.operation},
            {QStringLiteral("state"), key(row.state)},
            {QStringLiteral("lastDone"), TimeText::forJson(row.stat.lastDone.toUtc())},
            {QStringLiteral("seconds"), row.stat.totalTime},
            {QStringLiteral("runs"), row.stat.runs},
            {QStringLiteral("laps"), row.stat.laps},
            {QStringLiteral("limits"), limits},
            {QStringLiteral("share"), share ? QJsonValue(share->value) : QJsonValue()},
            {QStringLiteral("meter"), share ? QJsonValue(key(share->meter)) : QJsonValue()},
            {QStringLiteral("left"), left},
            {QStringLiteral("localId"), row.isRecorded ? QJsonValue(row.stat.localId) : QJsonValue()},
            {QStringLiteral("comment"), row.stat.comment},
            {QStringLiteral("pending"), row.isPending}};
}

QStringList DueOutput::csvColumns()
{
    return {QStringLiteral("carId"),        QStringLiteral("carNumber"),      QStringLiteral("carModel"),
            QStringLiteral("operationId"),  QStringLiteral("operation"),      QStringLiteral("state"),
            QStringLiteral("lastDone"),     QStringLiteral("seconds"),        QStringLiteral("runs"),
            QStringLiteral("laps"),         QStringLiteral("limits.seconds"), QStringLiteral("limits.runs"),
            QStringLiteral("limits.laps"),  QStringLiteral("share"),          QStringLiteral("meter"),
            QStringLiteral("left.seconds"), QStringLiteral("left.runs"),      QStringLiteral("left.laps"),
            QStringLiteral("localId"),      QStringLiteral("comment"),        QStringLiteral("pending")};
}

QVector<TextTable::Column> DueOutput::columns()
{
    return {{text("Model", "Модель")},
            {text("Kart", "Карт"), TextTable::Right},
            {text("Operation", "Операция")},
            {text("State", "Состояние")},
            {text("Last done", "Последний раз")},
            {text("Used", "Ресурс"), TextTable::Right},
            {text("Driven", "Наработка"), TextTable::Right},
            {text("Left", "Осталось"), TextTable::Right}};
}

TextTable::Row DueOutput::cells(const DueRow &row)
{
    const TextTable::Tone tone = toneOf(row.state);
    return {row.carModel,
            row.carNumber,
            operationText(row),
            {stateText(row.state), tone},
            TimeText::forPeople(row.stat.lastDone.toLocalTime()),
            {shareText(row), tone},
            drivenText(row),
            leftText(row)};
}

QString DueOutput::stateText(DueState state)
{
    switch (state) {
    case DueState::Open:
        return text("open", "открыто");
    case DueState::Due:
        return text("due", "пора");
    case DueState::Soon:
        return text("soon", "скоро");
    case DueState::Ok:
        return text("ok", "в норме");
    case DueState::Never:
        return text("never done", "не делали");
    }
    return {};
}

std::optional<int> DueOutput::percent(const DueRow &row)
{
    const std::optional<Meters::Share> share = Meters::largestShare(row.stat, row.limits);
    if (!share || !row.isRecorded)
        return std::nullopt;
    return int(share->value * 100);
}

QString DueOutput::shareText(const DueRow &row)
{
    const std::optional<int> share = percent(row);
    return share ? QString::number(*share) + QLatin1String(" %") : dash;
}

QString DueOutput::drivenText(const DueRow &row)
{
    const std::optional<Meters::Share> share = Meters::largestShare(row.stat, row.limits);
    if (!share)
        return dash;
    const QString limit = amount(share->meter, Meters::limit(row.limits, share->meter));
    if (!row.isRecorded)
        return limit;
    const int driven = Meters::driven(row.stat, share->meter);
    const QString number = share->meter == Meters::Seconds ? QString::number(driven / secondsPerHour, 'f', 1)
                                                           : QString::number(driven);
    return text("%1 of %2", "%1 из %2").arg(number, limit);
}

QString DueOutput::leftText(const DueRow &row)
{
    const std::optional<Meters::Share> share = Meters::largestShare(row.stat, row.limits);
    if (!share || !row.isRecorded)
        return dash;
    return amount(share->meter, double(*Meters::left(row.stat, row.limits, share->meter)));
}

QString DueOutput::amount(Meters::Meter meter, double value)
{
    switch (meter) {
    case Meters::Seconds:
        return text("%1 h", "%1 ч").arg(value / secondsPerHour, 0, 'f', 1);
    case Meters::Runs:
        return text("%1 runs", "%1 зд.").arg(value, 0, 'f', 0);
    case Meters::Laps:
        return text("%1 laps", "%1 кр.").arg(value, 0, 'f', 0);
    }
    return {};
}

QString DueOutput::operationText(const DueRow &row)
{
    if (row.opId == complaintOperationId)
        return text("complaint: %1", "жалоба: %1").arg(row.operation);
    return row.operation.isEmpty() ? text("operation %1", "операция %1").arg(row.opId) : row.operation;
}

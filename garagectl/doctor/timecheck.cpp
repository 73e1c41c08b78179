#include "garagectl/doctor/timecheck.h"

#include "data/datetimetext.h"
#include "garagectl/database/select.h"
#include "garagectl/doctor/catalogue.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace {

using namespace TimeCheck;

/// Clocks of two computers differ.
constexpr int toleratedMinutes = 5;

// As SQL and as a regular expression: "2026-03-01T10:00:00.000Z".
const QString normalForm = QStringLiteral("[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]T"
                                          "[0-9][0-9]:[0-9][0-9]:[0-9][0-9].[0-9][0-9][0-9]Z");

/// The ids of the findings, by form; the last is that of times in the future.
struct Ids
{
    std::array<const char *, 9> byForm;
    const char *future;
};

constexpr Ids lapIds {{nullptr, "lap-time-number", "lap-time-empty", "lap-time-digits", "lap-time-unreadable",
                       "lap-time-offset", "lap-time-blank", "lap-time-zoneless", "lap-time-precision"},
                      "lap-time-future"};
constexpr Ids recordIds {{nullptr, "record-time-number", "record-time-empty", "record-time-digits",
                          "record-time-unreadable", "record-time-offset", "record-time-blank",
                          "record-time-zoneless", "record-time-precision"},
                         "record-time-future"};

struct Group
{
    qint64 count = 0;
    QStringList examples;

    void add(const QString &example)
    {
        ++count;
        if (examples.size() < mostExamples)
            examples.append(example);
    }
};

bool isAscii(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() <= '~'; });
}

Form formOfText(const QString &text)
{
    static const QRegularExpression normal(QRegularExpression::anchoredPattern(normalForm));
    static const QRegularExpression offset(QStringLiteral("[+-][0-9]{2}:?[0-9]{2}$"));
    static const QRegularExpression zeroOffset(QStringLiteral("[+-]00:?00$"));
    if (text.isEmpty())
        return Empty;
    if (!isAscii(text))
        return NotAscii;
    if (!DateTimeText::fromDatabase(text).isValid())
        return Unreadable;
    if (offset.match(text, 11).hasMatch() && !zeroOffset.match(text).hasMatch())
        return Offset;
    if (text.at(10) == QLatin1Char(' '))
        return Blank;
    if (!text.endsWith(QLatin1Char('Z')) && !offset.match(text, 11).hasMatch())
        return Zoneless;
    return normal.match(text).hasMatch() ? Normal : OtherPrecision;
}

/// Only rows that are not as they should be are read.
QString selectSuspicious(const QString &table, const QString &idColumn, const QString &column,
                         const QDateTime &now)
{
    const QString latest = QLocale::c().toString(now.toUTC(), QStringLiteral("yyyy-MM-ddThh:mm:ss.zzz'Z'"));
    // NULL, numbers and blobs fail the first condition, impossible dates the second.
    return QStringLiteral("SELECT %2, %3 FROM %1 WHERE NOT ifnull(typeof(%3) = 'text' AND %3 GLOB '%4' AND "
                          "date(julianday(%3)) = substr(%3, 1, 10) AND %3 <= '%5', 0)")
        .arg(table, idColumn, column, normalForm, latest);
}

bool isFuture(const QVariant &value, RecordTime latest)
{
    if (value.type() != QVariant::String)
        return false;
    const RecordTime time = DateTimeText::fromDatabase(value.toString());
    return time.isValid() && time > latest;
}

Findings check(const GarageDatabase &database, const QString &statement, const Ids &ids,
               const QDateTime &latest)
{
    std::array<Group, 9> groups;
    Group future;
    Select::forEachRow(database, statement, [&](const QSqlQuery &row) {
        const QVariant value = row.value(1);
        const QString example = QStringLiteral("%1: %2").arg(row.value(0).toString(), value.toString());
        const Form form = formOf(value);
        if (form != Normal)
            groups.at(form).add(example);
        if (isFuture(value, latest))
            future.add(example);
    });
    Findings findings;
    for (std::size_t form = Number; form < groups.size(); ++form) {
        const Group &group = groups.at(form);
        if (group.count > 0)
            findings.append(DoctorCatalogue::finding(ids.byForm.at(form), group.count, group.examples));
    }
    if (future.count > 0)
        findings.append(DoctorCatalogue::finding(ids.future, future.count, future.examples));
    return findings;
}

} // namespace

TimeCheck::Form TimeCheck::formOf(const QVariant &value)
{
    if (value.isNull())
        return Empty;
    switch (value.type()) {
    case QVariant::Int:
    case QVariant::LongLong:
    case QVariant::Double:
        return Number;
    case QVariant::String:
        return formOfText(value.toString());
    default:
        return Unreadable; // a blob
    }
}

Findings TimeCheck::checkLaps(const GarageDatabase &database, const QDateTime &now)
{
    const QDateTime latest = now.addSecs(toleratedMinutes * 60);
    const QString statement = selectSuspicious(QStringLiteral("laps"), QStringLiteral("lap_id"),
                                               QStringLiteral("lap_timestamp"), latest);
    return check(database, statement, lapIds, latest);
}

Findings TimeCheck::checkRecords(const GarageDatabase &database, const QDateTime &now)
{
    const QDateTime latest = now.addSecs(toleratedMinutes * 60);
    const QString statement = selectSuspicious(QStringLiteral("maintainance"), QStringLiteral("id"),
                                               QStringLiteral("operation_time"), latest);
    return check(database, statement, recordIds, latest);
}

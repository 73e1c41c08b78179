#include "garagectl/output/timetext.h"

#include "garagectl/exitcode.h"
#include "garagectl/wording.h"

#include <QLocale>

namespace {

const QChar dash(0x2014);

QString dateFormat()
{
    return Wording::current() == Wording::Russian ? QStringLiteral("dd.MM.yyyy")
                                                  : QStringLiteral("yyyy-MM-dd");
}

} // namespace

QString TimeText::forPeople(const QDateTime &time)
{
    return time.isValid() ? QLocale::c().toString(time, dateFormat() + QLatin1String(" hh:mm"))
                          : QString(dash);
}

QString TimeText::forPeople(const QDate &date)
{
    return date.isValid() ? QLocale::c().toString(date, dateFormat()) : QString(dash);
}

QJsonValue TimeText::forJson(const QDateTime &time)
{
    if (!time.isValid())
        return QJsonValue::Null;
    return QLocale::c().toString(time.toUTC(), QStringLiteral("yyyy-MM-ddThh:mm:ss'Z'"));
}

QJsonValue TimeText::forJson(const QDate &date)
{
    if (!date.isValid())
        return QJsonValue::Null;
    return QLocale::c().toString(date, QStringLiteral("yyyy-MM-dd"));
}

QDate TimeText::dayFromArgument(const QString &text)
{
    const QLocale locale = QLocale::c();
    for (const QString &format : {QStringLiteral("yyyy-MM-dd"), QStringLiteral("dd.MM.yyyy")}) {
        const QDate day = locale.toDate(text, format);
        if (day.isValid() && locale.toString(day, format) == text) // "+028" is a year to toDate()
            return day;
    }
    throw Failure {
        ExitCode::BadUsage,
        ::text("%1 is not a day; write it as 2026-12-31", "%1 — не дата; пишите так: 31.12.2026").arg(text)};
}

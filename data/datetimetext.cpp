#include "data/datetimetext.h"

namespace {

constexpr int dateLength = 10; // "yyyy-MM-dd"

bool namesZone(const QString &text)
{
    return text.endsWith(QLatin1Char('Z')) || text.indexOf(QLatin1Char('+'), dateLength) >= 0
        || text.indexOf(QLatin1Char('-'), dateLength) >= 0;
}

} // namespace

QString DateTimeText::forDisplay(const QDateTime &dateTime)
{
    return dateTime.toString(QStringLiteral("dd.MM.yyyy hh:mm"));
}

QString DateTimeText::forJson(const QDateTime &dateTime)
{
    return dateTime.toUTC().toString(QStringLiteral("yyyy-MM-ddThh:mm"));
}

QString DateTimeText::forJsonWithZone(const QDateTime &dateTime)
{
    return dateTime.toUTC().toString(QStringLiteral("yyyy-MM-ddThh:mm'Z'"));
}

QString DateTimeText::forServiceAnnouncement(const QDateTime &dateTime)
{
    return dateTime.toUTC().toString(QStringLiteral("yyyy-MM-dd hh:mm"));
}

QDateTime DateTimeText::fromDatabase(const QString &text)
{
    if (text.size() <= dateLength)
        return {};
    QString iso = text;
    if (iso.at(dateLength) == QLatin1Char(' '))
        iso[dateLength] = QLatin1Char('T');
    // Read as local and relabelled afterwards, an hour that the local clock skips would be lost.
    if (!namesZone(iso))
        iso += QLatin1Char('Z');
    return QDateTime::fromString(iso, Qt::ISODate).toLocalTime();
}

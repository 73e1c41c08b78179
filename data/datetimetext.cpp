#include "data/datetimetext.h"

#include <QLocale>

#include <optional>

namespace {

constexpr int dateLength = 10; // "yyyy-MM-dd"
constexpr int hourLength = 13; // "yyyy-MM-ddThh"

bool namesZone(const QString &text)
{
    return text.endsWith(QLatin1Char('Z')) || text.indexOf(QLatin1Char('+'), dateLength) >= 0
        || text.indexOf(QLatin1Char('-'), dateLength) >= 0;
}

/// The digits of a text from left to right. Once something else was met, all further reading fails.
class Digits final
{
public:
    explicit Digits(const QString &text) : m_text(text) { }

    int number(int length)
    {
        int value = 0;
        for (int i = 0; i < length; ++i) {
            const int digit = next() - '0';
            m_ok = m_ok && digit >= 0 && digit <= 9;
            value = value * 10 + digit * int(m_ok);
        }
        return value;
    }
    void separator(char expected) { m_ok = next() == expected && m_ok; }
    bool skip(char optional)
    {
        const bool found = m_place < m_text.size() && m_text.at(m_place) == QLatin1Char(optional);
        m_place += int(found);
        return found;
    }
    bool isOver() const { return m_ok && m_place == m_text.size(); }

private:
    int next() { return m_place < m_text.size() ? m_text.at(m_place++).unicode() : 0; }

    const QString &m_text;
    int m_place = 0;
    bool m_ok = true;
};

constexpr qint64 epochDay = 2440588; // the Julian day of 1970-01-01
constexpr qint64 msPerDay = 24 * 3600 * 1000;

/// Reads "yyyy-MM-ddThh:mm[:ss[.zzz]][Z]", with "T" or a blank, in UTC; milliseconds since the epoch.
/// QDateTime reads these texts ten times slower.
std::optional<qint64> parsePlain(const QString &text)
{
    Digits digits(text);
    const int year = digits.number(4);
    digits.separator('-');
    const int month = digits.number(2);
    digits.separator('-');
    const int day = digits.number(2);
    if (!digits.skip('T'))
        digits.separator(' ');
    const int hour = digits.number(2);
    digits.separator(':');
    const int minute = digits.number(2);
    const bool hasSeconds = digits.skip(':');
    const int second = hasSeconds ? digits.number(2) : 0;
    const int ms = hasSeconds && digits.skip('.') ? digits.number(3) : 0;
    digits.skip('Z');

    const QDate date(year, month, day);
    if (!digits.isOver() || !date.isValid() || !QTime::isValid(hour, minute, second, ms))
        return std::nullopt;
    const qint64 days = date.toJulianDay() - epochDay;
    return days * msPerDay + ((hour * 60 + minute) * 60 + second) * 1000 + ms;
}

/// QDateTime::toString() writes the digits of the system's number locale.
QString inAsciiDigits(const QDateTime &dateTime, const QString &format)
{
    return QLocale::c().toString(dateTime, format);
}

} // namespace

QString DateTimeText::forDisplay(const QDateTime &dateTime)
{
    return inAsciiDigits(dateTime, QStringLiteral("dd.MM.yyyy hh:mm"));
}

QString DateTimeText::forJson(const QDateTime &dateTime)
{
    return inAsciiDigits(dateTime.toUTC(), QStringLiteral("yyyy-MM-ddThh:mm"));
}

QString DateTimeText::forJsonWithZone(const QDateTime &dateTime)
{
    return inAsciiDigits(dateTime.toUTC(), QStringLiteral("yyyy-MM-ddThh:mm'Z'"));
}

QString DateTimeText::forServiceAnnouncement(const QDateTime &dateTime)
{
    return inAsciiDigits(dateTime.toUTC(), QStringLiteral("yyyy-MM-dd hh:mm"));
}

RecordTime DateTimeText::fromDatabase(const QString &text)
{
    if (const std::optional<qint64> moment = parsePlain(text))
        return RecordTime::fromMSecsSinceEpoch(*moment);

    // Qt 6 reads an hour without minutes, too.
    if (text.size() <= hourLength || text.at(hourLength) != QLatin1Char(':'))
        return {};
    QString iso = text;
    if (iso.at(dateLength) == QLatin1Char(' '))
        iso[dateLength] = QLatin1Char('T');
    // Read as local and relabelled afterwards, an hour that the local clock skips would be lost.
    if (!namesZone(iso))
        iso += QLatin1Char('Z');
    return QDateTime::fromString(iso, Qt::ISODate);
}

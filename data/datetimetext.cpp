#include "data/datetimetext.h"

#include <QLocale>

namespace {

constexpr int dateLength = 10; // "yyyy-MM-dd"

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

struct UtcMoment
{
    qint64 day = 0; ///< Julian
    int ms = 0; ///< since its start
};

/// "yyyy-MM-ddThh:mm[:ss[.zzz]][Z]", with "T" or a blank, in years for which the system knows clock changes.
std::optional<UtcMoment> parsePlain(const QString &text)
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

    constexpr int firstYear = 1971;
    constexpr int lastYear = 2036;
    const QDate date(year, month, day);
    if (!digits.isOver() || year < firstYear || year > lastYear || !date.isValid()
        || !QTime::isValid(hour, minute, second, ms))
        return std::nullopt;
    return UtcMoment {date.toJulianDay(), ((hour * 60 + minute) * 60 + second) * 1000 + ms};
}

constexpr int msPerDay = 24 * 3600 * 1000;

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

QDateTime DateTimeText::Reader::fromDatabase(const QString &text)
{
    const std::optional<UtcMoment> utc = parsePlain(text);
    const std::optional<int> offset = utc ? offsetAround(utc->day) : std::nullopt;
    if (!offset)
        return DateTimeText::fromDatabase(text);

    // From local date and time Qt asks the system's zone once, from a moment three times.
    const qint64 ms = utc->day * msPerDay + utc->ms + *offset * qint64(1000);
    return QDateTime(QDate::fromJulianDay(ms / msPerDay), QTime::fromMSecsSinceStartOfDay(int(ms % msPerDay)),
                     Qt::LocalTime);
}

std::optional<int> DateTimeText::Reader::offsetAround(qint64 day)
{
    const auto known = m_offsets.constFind(day);
    if (known != m_offsets.cend())
        return *known;
    // A day to either side, so that no local time in between is skipped or comes twice.
    const int before = offsetAtStart(day - 1);
    const bool isSteady =
        before == offsetAtStart(day) && before == offsetAtStart(day + 1) && before == offsetAtStart(day + 2);
    const std::optional<int> offset = isSteady ? std::make_optional(before) : std::nullopt;
    m_offsets.insert(day, offset);
    return offset;
}

int DateTimeText::Reader::offsetAtStart(qint64 day)
{
    auto known = m_startOffsets.constFind(day); // neighbouring days need the same starts
    if (known == m_startOffsets.cend()) {
        const QDateTime start(QDate::fromJulianDay(day), QTime(0, 0), Qt::UTC);
        known = m_startOffsets.insert(day, start.toLocalTime().offsetFromUtc());
    }
    return *known;
}

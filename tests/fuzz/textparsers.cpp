#include "data/columnkeys.h"
#include "data/datetimetext.h"
#include "data/numbertext.h"
#include "data/records.h"
#include "garagectl/exitcode.h"
#include "garagectl/output/timetext.h"
#include "parsers.h"

#include <QRegularExpression>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace {

QString rest(ByteReader &bytes)
{
    return QString::fromUtf8(bytes.take(std::numeric_limits<int>::max()));
}

/// By QDateTime alone; a text without a zone is in UTC.
QDateTime readByQt(QString text)
{
    constexpr int dateLength = 10;
    if (text.size() <= dateLength)
        return {};
    if (text.at(dateLength) == QLatin1Char(' '))
        text[dateLength] = QLatin1Char('T');
    static const QRegularExpression zone(QStringLiteral("(Z$|[+-])"));
    if (!zone.match(text, dateLength).hasMatch())
        text += QLatin1Char('Z');
    return QDateTime::fromString(text, Qt::ISODate);
}

/// By the C library.
std::optional<int> numberByStrtol(QString text)
{
    while (!text.isEmpty() && text.at(0).isSpace())
        text.remove(0, 1);
    const QByteArray utf8 = text.toUtf8();
    char *end = nullptr;
    const long long value = std::strtoll(utf8.constData(), &end, 10);
    if (end == utf8.constData())
        return std::nullopt;
    using Range = std::numeric_limits<int>;
    return int(std::clamp<long long>(value, Range::min(), Range::max()));
}

/// By the C++ library.
int secondsByFromChars(const QString &text)
{
    std::string hours = text.trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toStdString();
    if (!hours.empty() && hours.front() == '+' && hours.substr(0, 2) != "+-")
        hours.erase(0, 1);
    double value = 0;
    const char *const last = hours.data() + hours.size();
    const auto [end, error] = std::from_chars(hours.data(), last, value);
    if (end != last || error == std::errc::invalid_argument
        || (error == std::errc() && !std::isfinite(value)))
        return 0;
    if (error == std::errc::result_out_of_range) // too small or too large: decided by the exponent's sign
        value = std::strtod(hours.c_str(), nullptr);
    return int(std::clamp(value * secondsPerHour, double(std::numeric_limits<int>::min()),
                          double(std::numeric_limits<int>::max())));
}

} // namespace

void Parsers::dateTime(ByteReader &bytes)
{
    const QString text = rest(bytes);
    const RecordTime time = DateTimeText::fromDatabase(text);
    require(time == RecordTime(readByQt(text)), "the time that Qt reads", text.toUtf8());
    if (!time.isValid())
        return;
    const QDateTime utc = time.toUtc();
    const int year = utc.date().year();
    if (year < 1 || year > 9999)
        return;
    constexpr qint64 minute = 60000;
    const RecordTime again = DateTimeText::fromDatabase(DateTimeText::forJsonWithZone(utc));
    const qint64 lost = time.toMSecsSinceEpoch() - again.toMSecsSinceEpoch();
    require(again.isValid() && lost >= 0 && lost < minute, "the same minute again", text.toUtf8());
}

void Parsers::leadingNumber(ByteReader &bytes)
{
    const QString text = rest(bytes);
    require(leadingInteger(text) == numberByStrtol(text), "the number that strtoll() reads", text.toUtf8());
}

void Parsers::columnKey(ByteReader &bytes)
{
    const int opId = int(quint32(bytes.integer(4)));
    require(ColumnKeys::operationId(ColumnKeys::operation(opId)) == opId, "the id again",
            QByteArray::number(opId));

    const QString key = (bytes.below(2) == 0 ? QStringLiteral("OP_") : QString()) + rest(bytes);
    const int expected = key.startsWith(QLatin1String("OP_")) ? numberByStrtol(key.mid(3)).value_or(-1) : -1;
    require(ColumnKeys::operationId(key) == expected, "the id in the key", key.toUtf8());
}

void Parsers::hours(ByteReader &bytes)
{
    const QString text = rest(bytes);
    require(secondsFromHours(text) == secondsByFromChars(text), "the seconds by from_chars()", text.toUtf8());
}

void Parsers::dayArgument(ByteReader &bytes)
{
    const QString text = rest(bytes);
    static const QRegularExpression form(
        QStringLiteral("^(?:(\\d{4})-(\\d\\d)-(\\d\\d)|(\\d\\d)\\.(\\d\\d)\\.(\\d{4}))\\z"));
    const auto match = form.match(text);
    const auto part = [&](int iso, int european) {
        return match.captured(match.captured(iso).isEmpty() ? european : iso).toInt();
    };
    const QDate expected(part(1, 6), part(2, 5), part(3, 4));
    try {
        const QDate day = TimeText::dayFromArgument(text);
        require(match.hasMatch() && day == expected, "the day in one of the two forms", text.toUtf8());
    } catch (const Failure &) {
        require(!match.hasMatch() || !expected.isValid(), "a day", text.toUtf8());
    }
}

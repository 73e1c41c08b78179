#include "data/numbertext.h"

#include "data/records.h"

#include <algorithm>
#include <cmath>
#include <limits>

std::optional<int> leadingInteger(QStringView text)
{
    using IntRange = std::numeric_limits<int>;
    const auto isDigit = [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); };

    auto it = std::find_if_not(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
    const bool negative = it != text.end() && *it == QLatin1Char('-');
    if (it != text.end() && (negative || *it == QLatin1Char('+')))
        ++it;
    if (it == text.end() || !isDigit(*it))
        return std::nullopt;

    qint64 value = 0;
    for (; it != text.end() && isDigit(*it) && value <= IntRange::max(); ++it)
        value = value * 10 + (it->unicode() - u'0');
    if (negative)
        value = -value;
    return int(std::clamp<qint64>(value, IntRange::min(), IntRange::max()));
}

int secondsFromHours(QString text)
{
    bool isRead = false;
    const double hours = text.replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&isRead);
    // toDouble() reads "inf" and "nan"; a number too large for it is infinite too, but not read.
    if (isRead && !std::isfinite(hours))
        return 0;
    const double seconds = hours * secondsPerHour;
    using Range = std::numeric_limits<int>;
    return int(std::clamp(seconds, double(Range::min()), double(Range::max())));
}

#include "host/remote/web/webrequests.h"
#include "parsers.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cstdlib>
#include <limits>
#include <string>

namespace {

QByteArray rest(ByteReader &bytes)
{
    return bytes.take(std::numeric_limits<int>::max());
}

} // namespace

void Parsers::requestTime(ByteReader &bytes)
{
    const QByteArray text = rest(bytes);
    const auto time = WebRequests::normalizedTime(text.toStdString());
    if (!time)
        return;
    require(WebRequests::normalizedTime(*time) == time, "itself, once normalised", text);
    const QDateTime read = QDateTime::fromString(QString::fromUtf8(text), Qt::ISODateWithMs);
    const QString normalised = QString::fromStdString(*time);
    require(QDateTime::fromString(normalised, Qt::ISODateWithMs).isValid(), "an existing moment", text);
    // Qt rounds fractions of milliseconds.
    require(!read.isValid()
                || std::llabs(read.msecsTo(QDateTime::fromString(normalised, Qt::ISODateWithMs))) <= 1,
            "the moment that Qt reads", text);
}

void Parsers::requestNumber(ByteReader &bytes)
{
    const std::string prefix = "/api/karts/";
    const QByteArray text = rest(bytes);
    const auto number = WebRequests::idAfter(prefix, prefix + text.toStdString());
    static const QRegularExpression digits(QStringLiteral("^[0-9]+\\z"));
    bool isRead = false;
    const QString latin = QString::fromLatin1(text.constData(), text.size());
    const int expected = latin.toInt(&isRead);
    const bool isNumber = isRead && digits.match(latin).hasMatch();
    require(number == (isNumber ? std::optional<int>(expected) : std::nullopt), "decimal digits of 32 bits",
            text);
}

void Parsers::requestBody(ByteReader &bytes)
{
    const QByteArray body = rest(bytes);
    const auto services = WebRequests::services(body.toStdString());
    if (!services)
        return;
    const QJsonArray listed =
        QJsonDocument::fromJson(body).object().value(QLatin1String("services")).toArray();
    require(!services->empty() && services->size() <= WebRequests::mostServices, "1 to 100 services", body);
    for (size_t i = 0; i < services->size(); ++i) {
        const WebRequests::Service &service = services->at(i);
        if (!service.isValid)
            continue;
        require(WebRequests::isKey(service.key), "a key", body);
        require(WebRequests::normalizedTime(service.doneTime) == service.doneTime, "a normalised time", body);
        require(size_t(QString::fromStdString(service.comment).toUcs4().size())
                    <= WebRequests::longestComment,
                "a comment of at most 1000 characters", body);
        // Qt's parser is another implementation; it keeps the first of two equal keys.
        const QJsonObject object = listed.at(int(i)).toObject();
        if (object.isEmpty() || body.count("car_id") != listed.size())
            continue;
        require(object.value(QLatin1String("car_id")).toInt(-2) == service.carId, "the kart's id", body);
    }
}

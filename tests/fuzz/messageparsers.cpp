#include "data/numbertext.h"
#include "data/servicerecordstore.h"
#include "fuzzedjson.h"
#include "garagectl/audit/messagelog.h"
#include "host/plugin/hostmessage.h"
#include "models/carslistmodel.h"
#include "models/draggeditems.h"
#include "parsers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace {

QByteArray textOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// The number, if it is a whole one of 32 bits; otherwise -1.
int wholeNumber(const QJsonValue &value)
{
    const double number = value.toDouble(std::nan(""));
    const bool isInRange =
        number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    return value.isDouble() && isInRange && number == std::floor(number) ? int(number) : -1;
}

QJsonArray people(ByteReader &bytes)
{
    static const QStringList keys {"id", "serviceCode", "lastName", "firstName", "midName"};
    QJsonArray list;
    for (int left = bytes.below(4); left > 0; --left)
        list.append(FuzzedJson::objectOf(bytes, keys));
    return list;
}

/// The last person with the service code of the record; an empty object if there is none.
QJsonObject personOf(const QJsonObject &json, const QJsonArray &personal)
{
    const QString code = json.value("serviceCode").toString();
    for (int i = int(personal.size()) - 1; i >= 0; --i) {
        const QJsonValue theirs = personal.at(i).toObject().value("serviceCode");
        if (theirs.isString() && theirs.toString() == code)
            return personal.at(i).toObject();
    }
    return {};
}

/// By another parser of JSON, which takes less than Qt's. Nothing if it is not an object, if a key that is
/// there twice makes the two differ, or after a zero, which ends the text for this parser.
std::optional<std::vector<nlohmann::json>> itemsByNlohmann(const QByteArray &payload)
{
    const auto document = nlohmann::json::parse(payload.begin(), payload.end(), nullptr, false);
    const bool mayDiffer = payload.count("srcList") > 1 || payload.contains('\\') || payload.contains('\0');
    if (!document.is_object() || mayDiffer)
        return std::nullopt;
    const auto list = document.find("srcList");
    if (list == document.end() || !list->is_array())
        return std::vector<nlohmann::json>();
    return list->get<std::vector<nlohmann::json>>();
}

/// "#rrggbb" by its digits.
QRgb colourByDigits(const QString &name)
{
    static const QRegularExpression form(QStringLiteral("^#[0-9a-fA-F]{6}\\z"));
    return form.match(name).hasMatch() ? QRgb(0xff000000U | name.mid(1).toUInt(nullptr, 16)) : QRgb(0);
}

} // namespace

void Parsers::messageLine(ByteReader &bytes)
{
    const QByteArray line = bytes.take(std::numeric_limits<int>::max());
    const auto message = HostMessage::fromJsonLine(line);
    if (!message)
        return;
    const QByteArray written = message->toJsonLine();
    const auto again = HostMessage::fromJsonLine(written);
    require(!message->event.isEmpty() && !written.contains('\n'), "one line with an event", line);
    require(again && again->module == message->module && again->event == message->event
                && again->data == message->data,
            "the same message again", line);
}

void Parsers::remoteRecord(ByteReader &bytes)
{
    static const QStringList keys {"id",           "carId",       "opId",    "opDoneDateTime", "operatorId",
                                   "operatorName", "serviceCode", "comment", "localId"};
    const QJsonObject json = FuzzedJson::objectOf(bytes, keys);
    const QJsonArray personal = people(bytes);
    const RemoteServiceRecord record = RemoteServiceRecord::fromJson(json, personal);
    const QByteArray input = textOf({{"record", json}, {"people", personal}});

    require(record.carId == wholeNumber(json.value("carId")) && record.opId == wholeNumber(json.value("opId"))
                && record.localId == wholeNumber(json.value("localId")),
            "whole numbers, or -1", input);
    require(record.opTime == json.value("opDoneDateTime").toString()
                && record.comment == json.value("comment").toString(),
            "texts, or empty ones", input);
    const QJsonObject person = personOf(json, personal);
    if (person.isEmpty()) {
        require(record.personName == json.value("operatorName").toString()
                    && record.personId == wholeNumber(json.value("operatorId")),
                "the operator of the record", input);
        return;
    }
    const QStringList names {person.value("lastName").toString(), person.value("firstName").toString(),
                             person.value("midName").toString()};
    require(record.personName == names.join(' ') && record.personId == wholeNumber(person.value("id")),
            "the last person with the service code", input);
}

void Parsers::carsList(ByteReader &bytes)
{
    static const QStringList keys {"id", "name", "num", "car_guid", "available_for_runs"};
    const bool onlyAvailable = bytes.below(2) == 0;
    QJsonArray cars;
    using Row = std::pair<QString, QString>; // model and number
    std::vector<Row> expected;
    for (int left = bytes.below(8); left > 0; --left) {
        const QJsonObject car = FuzzedJson::objectOf(bytes, keys);
        cars.append(car);
        const QJsonValue available = car.value("available_for_runs");
        if (!onlyAvailable || !available.isBool() || available.toBool())
            expected.emplace_back(car.value("name").toString(), car.value("num").toString());
    }
    const QJsonObject message {{"cars", cars}};
    CarsListModel model;
    model.loadFromJson(message, onlyAvailable);

    constexpr int modelColumn = 1;
    constexpr int numberColumn = 2;
    std::vector<Row> rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.emplace_back(model.index(row, modelColumn).data().toString(),
                          model.index(row, numberColumn).data().toString());
    const auto precedes = [](const Row &a, const Row &b) {
        const auto key = [](const Row &row) {
            return std::make_pair(row.first, leadingInteger(row.second).value_or(0));
        };
        return key(a) < key(b);
    };
    require(std::is_sorted(rows.cbegin(), rows.cend(), precedes), "models, then numbers, ascending",
            textOf(message));
    std::sort(rows.begin(), rows.end());
    std::sort(expected.begin(), expected.end());
    require(rows == expected, "each available kart once", textOf(message));
}

/// The host's reader of message lines is the second implementation.
void Parsers::messageLog(ByteReader &bytes)
{
    const QByteArray text = bytes.take(std::numeric_limits<int>::max());
    MessageLog log;
    std::vector<HostMessage> expected;
    int lines = 0;
    for (const QByteArray &line : text.split('\n')) {
        log.addLine(++lines, line);
        if (const auto message = HostMessage::fromJsonLine(line.trimmed()))
            expected.push_back(*message);
    }
    require(size_t(log.messages.size()) == expected.size(), "the messages that the host reads", text);
    int last = 0;
    for (int i = 0; i < log.messages.size(); ++i) {
        const MessageLog::Message &message = log.messages.at(i);
        require(message.event == expected[size_t(i)].event && message.data == expected[size_t(i)].data,
                "the event and data that the host reads", text);
        require(message.line > last && message.line <= lines, "ascending numbers of lines", text);
        last = message.line;
    }
}

void Parsers::draggedItems(ByteReader &bytes)
{
    static const QStringList keys {"name", "color"};
    QByteArray payload;
    if (bytes.below(2) == 0) {
        QJsonArray made;
        for (int left = bytes.below(4); left > 0; --left)
            made.append(FuzzedJson::objectOf(bytes, keys));
        payload = textOf({{"srcList", made}});
        const auto again = DraggedItems::fromPayload(payload);
        require(again && textOf({{"srcList", *again}}) == payload, "the items again", payload);
    } else {
        payload = bytes.take(std::numeric_limits<int>::max());
    }
    const auto items = DraggedItems::fromPayload(payload);
    const auto other = itemsByNlohmann(payload);
    require(!other || (items && size_t(items->size()) == other->size()), "the items of the other parser",
            payload);
    if (!items)
        return;
    const QString label = DraggedItems::label(*items);
    const QColor fill = DraggedItems::fill(*items);
    if (items->size() != 1) {
        require(label == (items->isEmpty() ? QString() : "x " + QString::number(items->size()))
                    && fill == QColor(255, 255, 255),
                "the number of items on white", payload);
        return;
    }
    const QJsonObject item = items->first().toObject();
    require(label == item.value("name").toString(), "the name of the item", payload);
    const QRgb colour = colourByDigits(item.value("color").toString());
    require(colour == 0 || fill.rgb() == colour, "the colour by its digits", payload);
}

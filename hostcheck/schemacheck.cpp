#include "hostcheck/schemacheck.h"

#include "hostcheck/protocol.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVariant>

#include <memory>

#include <nlohmann/json.hpp>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

namespace {

// The adapter for Qt's own JSON takes integers beyond 32 bits, which ids may be, for fractions.
using Json = nlohmann::json;
using Adapter = valijson::adapters::NlohmannJsonAdapter;

constexpr int longestValue = 100; // characters in a report
constexpr int longestText = 1000; // std::regex, which compares patterns, recurses for each character

Json converted(const QJsonValue &value);

Json converted(const QJsonArray &array)
{
    Json result = Json::array();
    for (const QJsonValue value : array)
        result.push_back(converted(value));
    return result;
}

Json converted(const QJsonObject &object)
{
    Json result = Json::object();
    for (auto member = object.constBegin(); member != object.constEnd(); ++member)
        result[member.key().toStdString()] = converted(member.value());
    return result;
}

Json convertedNumber(const QJsonValue &value)
{
    const QVariant number = value.toVariant();
    const double real = number.toDouble();
    constexpr double firstBeyond = 9223372036854775808.0;
    const bool isWhole = number.userType() == QMetaType::LongLong
        || (real >= -firstBeyond && real < firstBeyond && double(qint64(real)) == real);
    return isWhole ? Json(std::int64_t(number.toLongLong())) : Json(real);
}

Json converted(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool();
    case QJsonValue::Double:
        return convertedNumber(value);
    case QJsonValue::String:
        return value.toString().left(longestText).toStdString();
    case QJsonValue::Array:
        return converted(value.toArray());
    case QJsonValue::Object:
        return converted(value.toObject());
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return nullptr;
}

/// Empty for the data as a whole.
QString placeText(const std::vector<std::string> &context)
{
    QString place;
    for (const std::string &step : context)
        place += QString::fromStdString(step);
    return place.remove(QLatin1String("<root>"));
}

/// The value at the place that the validator names, as compact JSON.
QString valueText(QJsonValue value, const std::vector<std::string> &context)
{
    for (const std::string &step : context) {
        const QString name = QString::fromStdString(step).remove(QLatin1Char('[')).remove(QLatin1Char(']'));
        if (name != QLatin1String("<root>"))
            value = value.isArray() ? value.toArray().at(name.toInt()) : value[name];
    }
    const QByteArray text = QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2)).left(longestValue);
}

/// A fault inside an object or array is also reported for each level above it.
bool repeatsInnerFault(const valijson::ValidationResults::Error &error)
{
    return error.description.rfind("Failed to validate ", 0) == 0;
}

class Comparison final
{
public:
    void compare(const QJsonObject &schema, const QJsonValue &value, const QString &place)
    {
        valijson::ValidationResults results;
        validate(schema, value, &results);
        valijson::ValidationResults::Error error;
        while (results.popError(error)) {
            if (!repeatsInnerFault(error))
                addFault(error, value, place);
        }
        compareTexts(schema, value, place);
    }

    SchemaCheck::Result result() const { return m_result; }

private:
    static bool validate(const QJsonObject &schema, const QJsonValue &value,
                         valijson::ValidationResults *results)
    {
        valijson::Schema compiled;
        const Json schemaDocument = converted(schema);
        valijson::SchemaParser().populateSchema(Adapter(schemaDocument), compiled);
        const Json document = converted(value);
        return valijson::Validator().validate(compiled, Adapter(document), results);
    }

    void addFault(const valijson::ValidationResults::Error &error, const QJsonValue &value,
                  const QString &place)
    {
        m_result.faults.append(QStringLiteral("%1 is %2: %3")
                                   .arg(place + placeText(error.context), valueText(value, error.context),
                                        QString::fromStdString(error.description)));
    }

    /// JSON inside texts ("contentSchema"), which validators leave alone.
    void compareTexts(const QJsonObject &schema, const QJsonValue &value, const QString &place)
    {
        const QJsonValue content = schema.value(QLatin1String("contentSchema"));
        if (content.isObject() && value.isString())
            compareText(content.toObject(), value.toString(), place);
        const QJsonObject properties = schema.value(QLatin1String("properties")).toObject();
        for (auto property = properties.constBegin(); property != properties.constEnd(); ++property)
            compareTexts(property.value().toObject(), value[property.key()],
                         place + QLatin1Char('[') + property.key() + QLatin1Char(']'));
        for (const QJsonValue part : schema.value(QLatin1String("allOf")).toArray())
            compareTexts(part.toObject(), value, place);
        const QJsonValue condition = schema.value(QLatin1String("if"));
        if (condition.isObject() && validate(condition.toObject(), value, nullptr))
            compareTexts(schema.value(QLatin1String("then")).toObject(), value, place);
    }

    void compareText(const QJsonObject &schema, const QString &text, const QString &place)
    {
        const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
        if (document.isNull())
            m_result.unreadable.append(place);
        else if (document.isArray())
            compare(schema, document.array(), place);
        else
            compare(schema, document.object(), place);
    }

    SchemaCheck::Result m_result;
};

const QJsonObject &schemaOf(const QString &event)
{
    static QHash<QString, QJsonObject> schemas;
    auto found = schemas.find(event);
    if (found == schemas.end())
        found = schemas.insert(event, QJsonDocument::fromJson(Protocol::schemaOf(event)).object());
    return *found;
}

} // namespace

SchemaCheck::Result SchemaCheck::check(const QString &event, const QJsonObject &data)
{
    Comparison comparison;
    comparison.compare(schemaOf(event), data, QString());
    return comparison.result();
}

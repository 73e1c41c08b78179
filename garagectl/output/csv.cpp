#include "garagectl/output/csv.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

const QLatin1String lineEnd("\r\n");

QJsonValue valueAt(const QJsonObject &row, const QString &path)
{
    QJsonValue value = row;
    for (const QString &key : path.split(QLatin1Char('.')))
        value = value.toObject().value(key);
    return value;
}

QString columnName(const QString &path)
{
    QString name;
    for (QString key : path.split(QLatin1Char('.'))) {
        if (!name.isEmpty())
            key[0] = key.at(0).toUpper();
        name += key;
    }
    return name;
}

QString cell(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double: {
        // A JSON array of one number, without its brackets: the same digits as in the JSON output.
        const QByteArray array = QJsonDocument(QJsonArray {value}).toJson(QJsonDocument::Compact);
        return QString::fromLatin1(array.mid(1, array.size() - 2));
    }
    case QJsonValue::String:
        return Csv::textCell(value.toString());
    default:
        return {};
    }
}

} // namespace

QString Csv::textCell(const QString &text)
{
    static const QString calculated = QStringLiteral("=+-@\t");
    const bool needsApostrophe = !text.isEmpty() && calculated.contains(text.at(0));
    QString content = needsApostrophe ? QLatin1Char('\'') + text : text;

    static const QString special = QStringLiteral("\",\r\n");
    const bool needsQuotes =
        std::any_of(content.cbegin(), content.cend(), [](QChar c) { return special.contains(c); });
    if (!needsQuotes)
        return content;
    content.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + content + QLatin1Char('"');
}

QByteArray Csv::fromRows(const QStringList &columns, const QJsonArray &rows)
{
    QStringList cells;
    for (const QString &column : columns)
        cells.append(columnName(column));
    QString output = cells.join(QLatin1Char(',')) + lineEnd;
    for (const QJsonValue &row : rows) {
        cells.clear();
        for (const QString &column : columns)
            cells.append(cell(valueAt(row.toObject(), column)));
        output += cells.join(QLatin1Char(',')) + lineEnd;
    }
    return output.toUtf8();
}

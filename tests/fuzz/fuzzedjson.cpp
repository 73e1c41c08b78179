#include "fuzzedjson.h"

#include "support/protocolcatalogue.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <cstring>
#include <limits>

namespace {

constexpr int deepest = 3;

const QStringList &events()
{
    static const QStringList list = ProtocolCatalogue::understoodEvents();
    return list;
}

const QStringList &keys()
{
    static const QStringList list = [] {
        QStringList found;
        for (const QString &event : events())
            found += ProtocolCatalogue::keysOf(event);
        found.removeDuplicates();
        return found;
    }();
    return list;
}

const char *const texts[] = {
    "show_garage",
    "service_operation_done",
    "switchCarAvailability",
    "1",
    "2026-03-08T10:00:00.000Z",
    "2026-03-08 10:00",
    "31.02.2026",
    "12B",
    "",
    "%d %s %n",
    "\xd0\xa1\xd0\xbe\xd0\xb4\xd0\xb8",
    "'; DROP TABLE maintainance; --",
};

template<typename T, size_t count> T any(ByteReader &bytes, T const (&choices)[count])
{
    return choices[bytes.below(int(count))];
}

QJsonValue value(ByteReader &bytes, int depth);

QJsonArray array(ByteReader &bytes, int depth)
{
    QJsonArray elements;
    for (int left = bytes.below(5); left > 0 && !bytes.atEnd(); --left)
        elements.append(value(bytes, depth + 1));
    return elements;
}

QJsonObject members(ByteReader &bytes, int depth)
{
    QJsonObject object;
    for (int left = 1 + bytes.below(9); left > 0 && !bytes.atEnd(); --left) {
        const QString key = keys().at(bytes.below(keys().size()));
        object.insert(key, value(bytes, depth + 1));
    }
    return object;
}

QJsonValue value(ByteReader &bytes, int depth)
{
    switch (bytes.below(14)) {
    case 0:
        return QJsonValue::Null;
    case 1:
        return true;
    case 2:
        return false;
    case 3:
        return QString::fromUtf8(bytes.text());
    case 4: {
        const quint64 bits = bytes.integer(8);
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }
    case 5:
        return qint64(bytes.integer(8));
    case 6:
        return double(std::numeric_limits<int>::max()) + bytes.below(3);
    case 7:
        return double(std::numeric_limits<int>::min()) - bytes.below(3);
    case 8:
    case 9:
        return QString::fromUtf8(any(bytes, texts));
    case 10:
        if (depth < deepest)
            return array(bytes, depth);
        break;
    case 11:
        if (depth < deepest)
            return members(bytes, depth);
        break;
    case 12: // the remote side's records are JSON inside a text
        if (depth < deepest)
            return QString::fromUtf8(QJsonDocument(array(bytes, depth)).toJson(QJsonDocument::Compact));
        break;
    default:
        break;
    }
    return bytes.below(8) - 1; // ids that are there, and their neighbours
}

} // namespace

QString FuzzedJson::eventName(ByteReader &bytes)
{
    const int choice = bytes.byte();
    if (choice == 255)
        return QString::fromUtf8(bytes.text());
    return events().at(choice % events().size());
}

QJsonObject FuzzedJson::object(ByteReader &bytes)
{
    if (bytes.below(8) == 0)
        return QJsonDocument::fromJson(bytes.take(int(bytes.integer(2)))).object();
    return members(bytes, 0);
}

QJsonObject FuzzedJson::objectOf(ByteReader &bytes, const QStringList &keys)
{
    QJsonObject object;
    for (const QString &key : keys) {
        if (bytes.below(4) != 0)
            object.insert(key, value(bytes, 0));
    }
    return object;
}

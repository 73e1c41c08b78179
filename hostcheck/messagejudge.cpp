#include "hostcheck/messagejudge.h"

#include "hostcheck/findings.h"
#include "hostcheck/protocol.h"
#include "hostcheck/schemacheck.h"

#include <QJsonArray>

namespace {

/// Events that every host sends; the others depend on what its user does and on its remote side.
bool isNeededByEveryHost(const QString &event)
{
    static const QStringList events {QStringLiteral("clicked"), QStringLiteral("cars_list_changed"),
                                     QStringLiteral("personal_list"), QStringLiteral("run_saved_to_db")};
    return events.contains(event);
}

/// The module understands a number in a text here.
int idOf(const QJsonValue &value)
{
    bool isNumber = false;
    const int number = value.toString().toInt(&isNumber);
    return isNumber ? number : value.toInt(-1);
}

} // namespace

void MessageJudge::judge(const QString &event, const QJsonObject &data)
{
    ++m_counts[event];
    if (!Protocol::understoodEvents().contains(event)) {
        m_findings.report(
            QLatin1String("message-unknown-event"),
            QStringLiteral("The event \"%1\" came, which the module does not understand.").arg(event));
        return;
    }
    judgeShape(event, data);
    if (event == QLatin1String("cars_list_changed"))
        readCars(data);
    else if (event == QLatin1String("car_complain"))
        judgeCar(event, data.value(QLatin1String("carId")));
    else if (data.value(QLatin1String("msg")).toString() == QLatin1String("switchCarAvailability"))
        judgeCar(event, data.value(QLatin1String("data"))[QLatin1String("carId")]);
}

void MessageJudge::judgeShape(const QString &event, const QJsonObject &data)
{
    const SchemaCheck::Result result = SchemaCheck::check(event, data);
    for (const QString &fault : result.faults)
        m_findings.report(QLatin1String("message-shape"), QStringLiteral("%1: the data%2").arg(event, fault));
    for (const QString &place : result.unreadable)
        m_findings.report(
            QLatin1String("message-text"),
            QStringLiteral("%1: the data%2 is not the text of a JSON array.").arg(event, place));
}

void MessageJudge::judgeCar(const QString &event, const QJsonValue &carId)
{
    const int id = idOf(carId);
    const bool isReadable = carId.isDouble() || carId.isString(); // else the shape is the fault
    if (isReadable && !m_cars.isEmpty() && !m_cars.contains(id))
        m_findings.report(QLatin1String("message-unknown-car"),
                          QStringLiteral("%1 named the car %2, which is not in the last cars_list_changed.")
                              .arg(event)
                              .arg(id));
}

void MessageJudge::readCars(const QJsonObject &data)
{
    m_cars.clear();
    for (const QJsonValue car : data.value(QLatin1String("cars")).toArray())
        m_cars.insert(car[QLatin1String("id")].toInt(-1));
}

void MessageJudge::judgeEnd()
{
    for (const QString &event : Protocol::subscribedEvents()) {
        // A missing list of karts is an answer that did not come, if it was requested.
        const bool isAnswer =
            event == QLatin1String("cars_list_changed") && count(QStringLiteral("load_complete")) > 0;
        const bool isPendingRecords = event == QLatin1String("remote_service_data");
        if (count(event) > 0 || isAnswer || isPendingRecords)
            continue;
        m_findings.report(isNeededByEveryHost(event) ? QLatin1String("event-missing")
                                                     : QLatin1String("event-unused"),
                          QStringLiteral("The event %1 did not come.").arg(event));
    }
}

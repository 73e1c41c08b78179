#include "garagectl/report/sections.h"

#include "garagectl/fleet/servicelog.h"
#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

#include <QHash>

using namespace TemplateValues;

namespace {

using Records = QVector<const ServiceLogItem *>;

QString shownOperation(const ServiceLogItem &item)
{
    const QString name = operationText(item);
    return name.isEmpty() ? text("operation %1", "операция %1").arg(item.opId) : name;
}

void addOpenItem(Dictionary &list, const ServiceLogItem &item)
{
    Dictionary &entry = *list.AddSectionDictionary("OPEN_ITEM");
    const bool isComplaint = item.opId == complaintOperationId;
    entry.SetValue("KIND", isComplaint ? "complaint" : "task");
    setNumber(entry, "CAR_ID", item.carId);
    setText(entry, "NUMBER", item.num);
    setText(entry, "MODEL", item.model);
    const QString task = item.comment.isEmpty() ? shownOperation(item)
                                                : shownOperation(item) + QLatin1String(": ") + item.comment;
    setText(entry, "WHAT", isComplaint && !item.comment.isEmpty() ? item.comment : task, commentWidth);
    setText(entry, "TIME", TimeText::forPeople(item.opTime.toLocalTime()));
    addPerson(entry, item.personName);
}

void addRecord(Dictionary &table, const ServiceLogItem &item)
{
    Dictionary &line = *table.AddSectionDictionary("RECORD");
    line.SetValue("KIND", item.state == OpenState ? "open" : "done");
    setText(line, "RECORD_TIME", TimeText::forPeople(item.opTime.toLocalTime()));
    setText(line, "WHAT", shownOperation(item));
    if (item.state == OpenState)
        line.ShowSection("OPEN_RECORD");
    addPerson(line, item.personName);
    addComment(line, item.comment);
}

void addRecords(Dictionary &history, const Records &records, int mostRecords)
{
    if (records.isEmpty()) {
        history.ShowSection("HISTORY_EMPTY");
        return;
    }
    const Records latest = records.mid(0, mostRecords);
    if (!latest.isEmpty()) {
        Dictionary &table = *history.AddSectionDictionary("HISTORY_TABLE");
        for (const ServiceLogItem *item : latest)
            addRecord(table, *item);
    }
    if (records.size() > latest.size()) {
        setText(*history.AddSectionDictionary("EARLIER"), "TEXT",
                text("Earlier records: %1", "Более ранних записей: %1").arg(records.size() - latest.size()));
    }
}

void fillOpen(Dictionary &page, const QList<ServiceLogItem> &log)
{
    Dictionary *list = nullptr;
    for (const ServiceLogItem &item : log) {
        if (item.state != OpenState)
            continue;
        if (!list)
            list = page.AddSectionDictionary("OPEN_LIST");
        addOpenItem(*list, item);
    }
    if (!list)
        page.ShowSection("OPEN_EMPTY");
}

} // namespace

void ReportSections::fillHistory(Dictionary &page, const Report &report)
{
    fillOpen(page, report.log);

    QHash<int, Records> byCar;
    for (const ServiceLogItem &item : report.log)
        byCar[item.carId].append(&item);
    for (const MaintainanceItem &car : report.cars) {
        Dictionary &history = *page.AddSectionDictionary("HISTORY");
        setNumber(*history.AddSectionDictionary("ANCHOR"), "CAR_ID", car.carId);
        setText(history, "HEADING", text("Kart %1", "Карт %1").arg(car.num));
        setText(history, "MODEL", car.model);
        addRecords(history, byCar.take(car.carId), report.recordsPerKart);
    }

    Records ofDeletedCars;
    for (const ServiceLogItem &item : report.log) {
        if (byCar.contains(item.carId))
            ofDeletedCars.append(&item);
    }
    if (ofDeletedCars.isEmpty())
        return;
    Dictionary &history = *page.AddSectionDictionary("HISTORY");
    setText(history, "HEADING", text("Deleted karts", "Удалённые карты"));
    addRecords(history, ofDeletedCars, report.recordsPerKart);
}

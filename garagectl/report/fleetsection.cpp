#include "garagectl/report/sections.h"

#include "garagectl/fleet/dueoutput.h"
#include "garagectl/wording.h"

#include <QHash>

#include <algorithm>

using namespace TemplateValues;

namespace {

/// More columns do not fit on a sheet of paper; the others follow in a table of their own.
constexpr int mostColumns = 10;

constexpr int numberWidth = 16; // cells

using CarRows = QHash<int, QMap<int, const DueRow *>>; // by car and operation

struct ModelTable
{
    QString model;
    QVector<const MaintainanceItem *> cars;
    QVector<int> opIds;
    QMap<int, QString> operations;
};

QVector<ModelTable> tablesOf(const Report &report, const CarRows &rows)
{
    QVector<ModelTable> models;
    for (const MaintainanceItem &car : report.cars) {
        auto table = std::find_if(models.begin(), models.end(), [&car](const ModelTable &candidate) {
            return candidate.model == car.model;
        });
        if (table == models.end())
            table = models.insert(models.end(), ModelTable {car.model, {}, {}, {}});
        table->cars.append(&car);
        for (const DueRow *row : rows.value(car.carId)) {
            if (row->opId != complaintOperationId)
                table->operations.insert(row->opId, DueOutput::operationText(*row));
        }
    }

    QVector<ModelTable> tables;
    for (ModelTable &model : models) {
        const QVector<int> opIds = model.operations.keys().toVector();
        int first = 0;
        do {
            model.opIds = opIds.mid(first, mostColumns);
            tables.append(model);
            first += mostColumns;
        } while (first < opIds.size());
    }
    return tables;
}

void addCell(Dictionary &line, const DueRow *row)
{
    Dictionary &cell = *line.AddSectionDictionary("CELL");
    if (!row)
        return;
    setState(cell, row->state);
    setText(cell, "WHAT", DueOutput::operationText(*row));
    setText(cell, "DRIVEN_TEXT", DueOutput::drivenText(*row));
    cell.ShowSection("DETAILS");
    Dictionary &share = *cell.AddSectionDictionary("SHARE");
    setShare(share, *row);
    if (row->state == DueState::Open)
        share.ShowSection("OPEN_RECORD");
    addBar(cell, *row);
}

void addFillers(Dictionary &line, int count)
{
    for (int i = 0; i < count; ++i)
        line.AddSectionDictionary("FILLER");
}

void addCar(Dictionary &table, const MaintainanceItem &car, const QMap<int, const DueRow *> &rows,
            const QVector<int> &opIds, int fillers)
{
    Dictionary &line = *table.AddSectionDictionary("CAR");
    setNumber(line, "CAR_ID", car.carId);
    setText(line, "NUMBER", car.num, numberWidth);
    if (rows.contains(complaintOperationId))
        line.ShowSection("COMPLAINT");
    for (const int opId : opIds)
        addCell(line, rows.value(opId));
    addFillers(line, fillers);
}

void addLegendEntry(Dictionary &legend, const char *stateKey, double width, const QString &label)
{
    Dictionary &entry = *legend.AddSectionDictionary("LEGEND_ENTRY");
    entry.SetValue("CLASS", stateKey);
    setNumber(entry, "WIDTH", width);
    setText(entry, "LABEL", label);
}

void addLegend(Dictionary &page)
{
    Dictionary &legend = *page.AddSectionDictionary("LEGEND");
    addLegendEntry(legend, "due", 130, text("due", "пора"));
    addLegendEntry(legend, "soon", 90, text("soon", "скоро"));
    addLegendEntry(legend, "ok", 50, text("ok", "в норме"));
    addLegendEntry(legend, "never", 0, text("never done", "не делали"));
    setText(legend, "LIMIT_LABEL", text("limit", "лимит"));
    setText(legend, "MARK_LABEL", text("open complaint or task", "открытая жалоба или задание"));
}

} // namespace

void ReportSections::fillFleet(Dictionary &page, const Report &report)
{
    if (report.cars.isEmpty()) {
        page.ShowSection("FLEET_EMPTY");
        return;
    }
    addLegend(page);
    CarRows rows;
    for (const DueRow &row : report.rows)
        rows[row.carId].insert(row.opId, &row);

    const QVector<ModelTable> tables = tablesOf(report, rows);
    int columns = 0;
    for (const ModelTable &table : tables)
        columns = std::max(columns, int(table.opIds.size()));
    for (const ModelTable &table : tables) {
        Dictionary &values = *page.AddSectionDictionary("FLEET_TABLE");
        setText(values, "CAPTION", table.model);
        const int fillers = int(columns - table.opIds.size());
        for (const int opId : table.opIds)
            setText(*values.AddSectionDictionary("FLEET_OPERATION"), "NAME", table.operations.value(opId));
        addFillers(values, fillers);
        for (const MaintainanceItem *car : table.cars)
            addCar(values, *car, rows.value(car->carId), table.opIds, fillers);
    }
}

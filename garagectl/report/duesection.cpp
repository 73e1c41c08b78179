#include "garagectl/report/sections.h"

#include "garagectl/fleet/dueoutput.h"
#include "garagectl/output/timetext.h"
#include "garagectl/wording.h"

#include <QHash>

#include <algorithm>
#include <tuple>
#include <utility>

using namespace TemplateValues;

namespace {

using ExpectedDays = QHash<std::pair<int, int>, QDate>; // by car and operation

QVector<DueRow> listedRows(const QVector<DueRow> &rows)
{
    QVector<DueRow> listed;
    std::copy_if(rows.cbegin(), rows.cend(), std::back_inserter(listed),
                 [](const DueRow &row) { return row.needsWork() || row.state == DueState::Soon; });
    const auto order = [](const DueRow &row) {
        const std::optional<Meters::Share> share = Meters::largestShare(row.stat, row.limits);
        return std::make_tuple(row.state, row.opId != complaintOperationId, share ? -share->value : 0.0);
    };
    std::stable_sort(listed.begin(), listed.end(),
                     [&order](const DueRow &a, const DueRow &b) { return order(a) < order(b); });
    return listed;
}

QString expectedText(const DueRow &row, const ExpectedDays &expected)
{
    return row.needsWork() ? text("now", "сейчас")
                           : TimeText::forPeople(expected.value({row.carId, row.opId}));
}

void addDueRow(Dictionary &table, const DueRow &row, const ExpectedDays &expected)
{
    Dictionary &line = *table.AddSectionDictionary("DUE_ROW");
    setState(line, row.state);
    line.SetValue("KIND", row.opId == complaintOperationId ? "complaint" : "scheduled");
    setNumber(line, "CAR_ID", row.carId);
    setText(line, "NUMBER", row.carNumber);
    setText(line, "MODEL", row.carModel);
    setText(line, "OPERATION_TEXT", DueOutput::operationText(row), commentWidth);
    if (row.state == DueState::Open && row.opId != complaintOperationId)
        addComment(line, row.stat.comment);
    addBar(line, row);
    setShare(line, row);
    setText(line, "DRIVEN_TEXT", DueOutput::drivenText(row));
    setText(line, "LEFT_TEXT", DueOutput::leftText(row));
    setText(line, "LAST_DONE_TEXT", TimeText::forPeople(row.stat.lastDone.toLocalTime()));
    setText(line, "EXPECTED_TEXT", expectedText(row, expected));
}

} // namespace

void ReportSections::fillDue(Dictionary &page, const Report &report)
{
    const QVector<DueRow> rows = listedRows(report.rows);
    if (rows.isEmpty()) {
        page.ShowSection("DUE_EMPTY");
        return;
    }
    ExpectedDays expected;
    for (const ForecastRow &row : report.forecast)
        expected.insert({row.due.carId, row.due.opId}, row.expectedDay);
    Dictionary &table = *page.AddSectionDictionary("DUE_TABLE");
    for (const DueRow &row : rows)
        addDueRow(table, row, expected);
}

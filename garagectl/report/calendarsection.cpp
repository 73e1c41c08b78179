#include "garagectl/report/sections.h"

#include "garagectl/fleet/dueoutput.h"
#include "garagectl/wording.h"

#include <QHash>

#include <algorithm>

using namespace TemplateValues;

namespace {

using DayEntries = QMap<int, QVector<const ForecastRow *>>; // by operation

/// Kart numbers, with the model where several karts have one number.
class KartNames final
{
public:
    explicit KartNames(const QList<MaintainanceItem> &cars)
    {
        for (const MaintainanceItem &car : cars)
            ++m_counts[car.num];
    }

    QString nameOf(const DueRow &row) const
    {
        const bool isUnique = m_counts.value(row.carNumber) < 2;
        return isUnique ? row.carNumber : row.carNumber + QLatin1Char(' ') + row.carModel;
    }

private:
    QHash<QString, int> m_counts;
};

void addEntries(Dictionary &cell, const DayEntries &entries, const KartNames &names)
{
    Dictionary &list = *cell.AddSectionDictionary("DAY_LIST");
    for (const QVector<const ForecastRow *> &rows : entries) {
        Dictionary &entry = *list.AddSectionDictionary("ENTRY");
        setText(entry, "OPERATION_NAME", DueOutput::operationText(rows.first()->due));
        for (const ForecastRow *row : rows) {
            Dictionary &number = *entry.AddSectionDictionary("NUMBERS");
            setNumber(number, "CAR_ID", row->due.carId);
            setText(number, "NUMBER", names.nameOf(row->due));
        }
    }
}

void addDay(Dictionary &week, const QDate &day, const QDate &today, const DayEntries &entries,
            const KartNames &names)
{
    Dictionary &cell = *week.AddSectionDictionary("DAY");
    const bool isNewMonth = day.day() == 1 || day == mondayOf(today);
    setText(cell, "ISO", day.toString(Qt::ISODate));
    setText(cell, "NAME", dayText(day, "dddd"));
    setText(cell, "DATE", dayText(day, isNewMonth ? "d MMMM" : "d MMM"));
    if (day == today)
        cell.ShowSection("IS_TODAY");
    cell.SetValue("KIND", day < today ? "past" : day == today ? "today" : entries.isEmpty() ? "empty" : "");
    if (!entries.isEmpty())
        addEntries(cell, entries, names);
}

void addWeekdays(Dictionary &page, const QDate &monday)
{
    for (int i = 0; i < daysOfWeek; ++i) {
        Dictionary &weekday = *page.AddSectionDictionary("WEEKDAY");
        setText(weekday, "NAME", dayText(monday.addDays(i), "dddd"));
        setText(weekday, "SHORT_NAME", dayText(monday.addDays(i), "ddd"));
    }
}

} // namespace

void ReportSections::fillCalendar(Dictionary &page, const Report &report)
{
    const QDate today = report.now.date();
    const QDate monday = mondayOf(today);
    const QDate end = monday.addDays(daysOfWeek * report.weeks);
    QMap<QDate, DayEntries> days;
    int now = 0;
    int later = 0;
    int never = 0;
    int unknown = 0;
    for (const ForecastRow &row : report.forecast) {
        if (row.due.needsWork())
            ++now;
        else if (!row.due.isRecorded)
            ++never;
        else if (!row.expectedDay.isValid())
            ++unknown;
        else if (row.expectedDay >= end)
            ++later;
        else
            days[row.expectedDay][row.due.opId].append(&row);
    }

    addWeekdays(page, monday);
    const KartNames names(report.cars);
    for (QDate weekStart = monday; weekStart < end; weekStart = weekStart.addDays(daysOfWeek)) {
        Dictionary &week = *page.AddSectionDictionary("WEEK");
        for (int i = 0; i < daysOfWeek; ++i) {
            const QDate day = weekStart.addDays(i);
            addDay(week, day, today, days.value(day), names);
        }
    }
    setText(
        page, "FORECAST_NOTE",
        text(
            "The day on which each limit is passed at the pace of the last %1 open days, with the karts' "
            "numbers.",
            "День, когда лимит будет превышен при темпе последних рабочих дней трассы (%1), и номера картов.")
            .arg(report.paceDays),
        commentWidth);
    setText(
        page, "FORECAST_REST",
        text("Not in the calendar: due now %1, later %2, day unknown %3, never done %4.",
             "Не вошли в календарь: пора уже сейчас — %1, позже — %2, срок неизвестен — %3, не делали — %4.")
            .arg(now)
            .arg(later)
            .arg(unknown)
            .arg(never),
        commentWidth);
}

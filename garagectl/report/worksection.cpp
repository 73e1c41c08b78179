#include "garagectl/report/sections.h"

#include "garagectl/wording.h"

#include <algorithm>
#include <numeric>

using namespace TemplateValues;

namespace {

constexpr int mostPeople = 20;

// Units of the drawing.
constexpr double chartWidth = 400;
constexpr double numberHeight = 11;
constexpr double labelHeight = 12;
constexpr double widestColumn = 28;
constexpr double narrowestNumber = 16;
constexpr double narrowestLabel = 42;

struct Worker
{
    QString name;
    QVector<int> perWeek;

    int total() const { return std::accumulate(perWeek.cbegin(), perWeek.cend(), 0); }
    int most() const { return *std::max_element(perWeek.cbegin(), perWeek.cend()); }
};

void add(Worker &sum, const Worker &worker)
{
    for (int week = 0; week < sum.perWeek.size(); ++week)
        sum.perWeek[week] += worker.perWeek.at(week);
}

/// Who did how much, most first.
QVector<Worker> workersOf(const Report &report, const QDate &firstMonday)
{
    QMap<QString, Worker> byName;
    for (const ServiceLogItem &item : report.log) {
        const qint64 day = firstMonday.daysTo(item.opTime.toLocalTime().date());
        const bool isListed = item.opTime.isValid() && item.opTime <= report.now && item.state == DoneState;
        if (!isListed || day < 0)
            continue;
        Worker &worker = byName[item.personName];
        worker.name = item.personName.isEmpty() ? text("no name", "без имени") : item.personName;
        worker.perWeek.resize(report.weeks);
        ++worker.perWeek[int(day / daysOfWeek)];
    }
    QVector<Worker> workers = byName.values().toVector();
    std::stable_sort(workers.begin(), workers.end(),
                     [](const Worker &a, const Worker &b) { return a.total() > b.total(); });
    return workers;
}

/// All people as one, and those beyond the first ones as one.
Worker sumOf(const QVector<Worker> &workers, const QString &name, int weeks)
{
    Worker sum {name, QVector<int>(weeks)};
    for (const Worker &worker : workers)
        add(sum, worker);
    return sum;
}

/// The columns of one person, or of all.
struct Chart
{
    QDate firstMonday;
    double height = 0; ///< of the highest column
    int highest = 1; ///< its number
    bool hasLabels = false;
};

QString weekText(const Chart &chart, int week)
{
    return dayText(chart.firstMonday.addDays(daysOfWeek * week), "d MMM");
}

void addColumns(Dictionary &line, const Worker &worker, const Chart &chart)
{
    const double pitch = chartWidth / double(worker.perWeek.size());
    const double width = std::min(widestColumn, pitch * 0.7);
    const double base = numberHeight + chart.height;
    const int labelStep = int(std::ceil(narrowestLabel / pitch));
    for (int week = 0; week < worker.perWeek.size(); ++week) {
        const int count = worker.perWeek.at(week);
        const double height = chart.height * count / chart.highest;
        Dictionary &column = *line.AddSectionDictionary("COLUMN");
        setNumber(column, "X", pitch * (week + 0.5) - width / 2);
        setNumber(column, "Y", base - height);
        setNumber(column, "COLUMN_WIDTH", width);
        setNumber(column, "HEIGHT", height);
        setNumber(column, "MIDDLE", pitch * (week + 0.5));
        if (count > 0 && pitch >= narrowestNumber) {
            Dictionary &number = *column.AddSectionDictionary("COLUMN_NUMBER");
            setNumber(number, "NUMBER", count);
            setNumber(number, "NUMBER_Y", base - height - 2);
        }
        if (chart.hasLabels && week % labelStep == 0) {
            Dictionary &label = *column.AddSectionDictionary("COLUMN_LABEL");
            setText(label, "LABEL", weekText(chart, week));
            setNumber(label, "LABEL_Y", base + labelHeight - 2);
        }
    }
}

void addWorker(Dictionary &table, const Worker &worker, const Chart &chart)
{
    Dictionary &line = *table.AddSectionDictionary("WORK_ROW");
    line.SetValue("KIND", chart.hasLabels ? "all" : "person");
    setText(line, "NAME", worker.name);
    setNumber(line, "TOTAL_NUMBER", worker.total());
    setNumber(line, "CHART_WIDTH", chartWidth);
    setNumber(line, "CHART_HEIGHT", numberHeight + chart.height + (chart.hasLabels ? labelHeight : 1));
    setNumber(line, "BASE", numberHeight + chart.height);
    QStringList weeks;
    for (int week = 0; week < worker.perWeek.size(); ++week)
        weeks.append(weekText(chart, week) + QLatin1String(": ") + QString::number(worker.perWeek.at(week)));
    line.SetValue("DESCRIPTION", weeks.join(QLatin1String(", ")).toStdString());
    addColumns(line, worker, chart);
}

} // namespace

void ReportSections::fillWork(Dictionary &page, const Report &report)
{
    const QDate firstMonday = mondayOf(report.now.date()).addDays(-daysOfWeek * (report.weeks - 1));
    QVector<Worker> workers = workersOf(report, firstMonday);
    if (workers.isEmpty()) {
        page.ShowSection("WORK_EMPTY");
        return;
    }
    const Worker all = sumOf(workers, text("All", "Все"), report.weeks);
    if (workers.size() > mostPeople) {
        const Worker others = sumOf(workers.mid(mostPeople - 1), text("others", "остальные"), report.weeks);
        workers.resize(mostPeople - 1);
        workers.append(others);
    }
    int highest = 1;
    for (const Worker &worker : qAsConst(workers))
        highest = std::max(highest, worker.most());

    Dictionary &table = *page.AddSectionDictionary("WORK_TABLE");
    addWorker(table, all, {firstMonday, 48, all.most(), true});
    for (const Worker &worker : qAsConst(workers))
        addWorker(table, worker, {firstMonday, 20, highest, false});
    setText(table, "WORK_NOTE",
            text("Records that are done, per week from Monday on. The people's columns have one scale.",
                 "Сделанные записи по неделям, с понедельника. У столбцов всех людей один масштаб."),
            commentWidth);
}

#include "garagectl/report/reportpage.h"

#include "data/statuscolors.h"
#include "garagectl/output/timetext.h"
#include "garagectl/report/sections.h"
#include "garagectl/wording.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>

#include <ctemplate/template.h>

#include <algorithm>

using namespace TemplateValues;

/// Outside a namespace, as Q_INIT_RESOURCE demands.
static void initReportResources()
{
    Q_INIT_RESOURCE(report);
}

namespace {

std::string expanded(const char *resource, const Dictionary &values)
{
    initReportResources();
    QFile file(QLatin1String(":/report/") + QLatin1String(resource));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("The template %s is missing", resource);
    ctemplate::TemplateCache cache;
    std::string output;
    const bool isValid =
        cache.StringToTemplateCache(resource, file.readAll().toStdString(), ctemplate::STRIP_BLANK_LINES)
        && cache.ExpandWithData(resource, ctemplate::STRIP_BLANK_LINES, &values, nullptr, &output);
    if (!isValid)
        qFatal("The template %s cannot be expanded", resource);
    return output;
}

QString hexColor(unsigned rgb)
{
    return QLatin1Char('#') + QString::number(rgb, 16).rightJustified(6, QLatin1Char('0'));
}

std::string style()
{
    Dictionary colors("style");
    setText(colors, "ATTENTION", hexColor(StatusColors::attention));
    setText(colors, "WITHIN_LIMITS", hexColor(StatusColors::withinLimits));
    return expanded("style.css", colors);
}

/// A source of the Content-Security-Policy.
std::string hashSource(const std::string &content)
{
    const QByteArray hash =
        QCryptographicHash::hash(QByteArray::fromStdString(content), QCryptographicHash::Sha256);
    return "sha256-" + hash.toBase64().toStdString();
}

void addCount(Dictionary &page, const char *id, const char *kind, int number, const QString &label)
{
    Dictionary &count = *page.AddSectionDictionary("COUNT");
    count.SetValue("ID", id);
    count.SetValue("CLASS", number > 0 ? kind : "");
    setNumber(count, "NUMBER", number);
    setText(count, "LABEL", label);
}

void addCounts(Dictionary &page, const Report &report)
{
    const auto inState = [&report](DueState state) {
        return int(std::count_if(report.rows.cbegin(), report.rows.cend(),
                                 [state](const DueRow &row) { return row.state == state; }));
    };
    const QDate weekAhead = report.now.date().addDays(7);
    const RecordTime now = report.now;
    const RecordTime weekAgo = report.now.addDays(-7);
    const auto coming =
        std::count_if(report.forecast.cbegin(), report.forecast.cend(),
                      [&](const ForecastRow &row) { return !row.due.needsWork() && row.isDueBy(weekAhead); });
    const auto done = std::count_if(report.log.cbegin(), report.log.cend(), [=](const ServiceLogItem &item) {
        return item.state == DoneState && item.opTime > weekAgo && item.opTime <= now;
    });
    addCount(page, "count-open", "attention", inState(DueState::Open), text("open", "открыто"));
    addCount(page, "count-due", "attention", inState(DueState::Due), text("due", "пора"));
    addCount(page, "count-soon", "soon", inState(DueState::Soon), text("soon", "скоро"));
    addCount(page, "count-coming", "", int(coming), text("more due in 7 days", "наступит за 7 дней"));
    addCount(page, "count-done", "", int(done), text("done in 7 days", "сделано за 7 дней"));
    addCount(page, "count-karts", "", int(report.cars.size()), text("karts", "картов"));
}

struct Label
{
    const char *name;
    const char *english;
    const char *russian;
};

constexpr Label labels[] = {
    {"LANGUAGE", "en", "ru"},
    {"TITLE", "Garage report", "Отчёт гаража"},
    {"CONTENTS", "Contents", "Содержание"},
    {"FLEET_TITLE", "The fleet at a glance", "Парк одним взглядом"},
    {"DUE_TITLE", "Due and soon", "Пора и скоро"},
    {"FORECAST_TITLE", "Forecast", "Прогноз"},
    {"WORK_TITLE", "Work done", "Сделано"},
    {"OPEN_TITLE", "Open complaints and tasks", "Открытые жалобы и задания"},
    {"HISTORY_TITLE", "History of each kart", "История каждого карта"},
    {"NO_KARTS", "There are no karts.", "Картов нет."},
    {"NOTHING_DUE", "Nothing is due, and nothing will be soon.", "Ничего не пора и не скоро."},
    {"NO_WORK", "No work was recorded in these weeks.", "За эти недели работ не записано."},
    {"NOTHING_OPEN", "Nothing is open.", "Открытых нет."},
    {"NO_RECORDS", "No records.", "Записей нет."},
    {"OPEN_COMPLAINT", "open complaint", "открытая жалоба"},
    {"KART", "Kart", "Карт"},
    {"OPERATION", "Operation", "Операция"},
    {"STATE", "State", "Состояние"},
    {"USED", "Used", "Ресурс"},
    {"DRIVEN", "Driven", "Наработка"},
    {"LEFT", "Left", "Осталось"},
    {"LAST_DONE", "Last done", "Последний раз"},
    {"EXPECTED", "Due on", "Срок"},
    {"TODAY", "today", "сегодня"},
    {"PERSON", "Person", "Исполнитель"},
    {"PER_WEEK", "Per week", "По неделям"},
    {"TOTAL", "Total", "Всего"},
    {"TIME", "Time", "Время"},
    {"OPEN", "open", "открыто"},
};

void setLabels(Dictionary &page)
{
    for (const Label &label : labels)
        setText(page, label.name, text(label.english, label.russian));
    setText(page, "FOOTER",
            text("Made by garagectl %1 with the rules of the window «Гараж».",
                 "Сделано программой garagectl %1 по правилам окна «Гараж».")
                .arg(QCoreApplication::applicationVersion()),
            commentWidth);
}

} // namespace

QByteArray ReportPage::html(const Report &report)
{
    Dictionary page("page");
    const std::string pageStyle = style();
    page.SetValue("STYLE", pageStyle);
    page.SetValue("STYLE_HASH", hashSource(pageStyle));
    setLabels(page);
    setText(page, "MADE_AT", TimeText::forPeople(report.now));
    setText(page, "MADE_AT_ISO", report.now.toString(QStringLiteral("yyyy-MM-ddThh:mm")));
    setText(page, "FILE", report.fileName);
    addCounts(page, report);
    ReportSections::fillFleet(page, report);
    ReportSections::fillDue(page, report);
    ReportSections::fillCalendar(page, report);
    ReportSections::fillWork(page, report);
    ReportSections::fillHistory(page, report);
    return QByteArray::fromStdString(expanded("page.html", page));
}

#include "garagectl/report/templatevalues.h"

#include "garagectl/fleet/dueoutput.h"
#include "garagectl/output/textwidth.h"
#include "garagectl/wording.h"

#include <QLocale>

#include <algorithm>

namespace {

/// The bar of the page ends here, in percent of the limit.
constexpr double longestBar = 150;

} // namespace

void TemplateValues::setText(Dictionary &values, const char *name, const QString &text, int width)
{
    values.SetValue(name, TextWidth::elided(TextWidth::printable(text), width).toStdString());
}

void TemplateValues::setNumber(Dictionary &values, const char *name, double number)
{
    values.SetValue(name, QByteArray::number(number, 'g', 6).toStdString());
}

void TemplateValues::addComment(Dictionary &values, const QString &comment)
{
    if (!comment.isEmpty())
        setText(*values.AddSectionDictionary("COMMENT"), "TEXT", comment, commentWidth);
}

void TemplateValues::addPerson(Dictionary &values, const QString &person)
{
    if (!person.isEmpty())
        setText(*values.AddSectionDictionary("PERSON_NAME"), "NAME", person);
}

void TemplateValues::addBar(Dictionary &values, const DueRow &row)
{
    const std::optional<Meters::Share> share = Meters::largestShare(row.stat, row.limits);
    if (!share)
        return;
    const double percent = row.isRecorded ? share->value * 100 : 0;
    setNumber(*values.AddSectionDictionary("BAR"), "WIDTH", std::clamp(percent, 0.0, longestBar));
}

void TemplateValues::setShare(Dictionary &values, const DueRow &row)
{
    const std::optional<int> percent = DueOutput::percent(row);
    setText(values, "VALUE", percent ? QString::number(*percent) : QString(QChar(0x2014)));
    if (percent)
        values.ShowSection("PERCENT");
}

void TemplateValues::setState(Dictionary &values, DueState state)
{
    setText(values, "STATE_KEY", DueOutput::key(state));
    setText(values, "STATE_TEXT", DueOutput::stateText(state));
}

QString TemplateValues::dayText(const QDate &day, const char *format)
{
    const QLocale locale(Wording::current() == Wording::Russian ? QLocale::Russian : QLocale::English);
    return locale.toString(day, QLatin1String(format));
}

QDate TemplateValues::mondayOf(const QDate &day)
{
    return day.addDays(Qt::Monday - day.dayOfWeek());
}

#include "garagectl/findings/findingoutput.h"

#include "garagectl/output/textwidth.h"
#include "garagectl/wording.h"

#include <algorithm>

namespace {

constexpr int lineCells = 100;
constexpr int indentCells = 4;

QString key(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return QStringLiteral("error");
    case Finding::Warning:
        return QStringLiteral("warning");
    case Finding::Note:
        break;
    }
    return QStringLiteral("note");
}

TextTable::Cell severityCell(Finding::Severity severity)
{
    switch (severity) {
    case Finding::Error:
        return {text("error", "ошибка"), TextTable::Bad};
    case Finding::Warning:
        return {text("warning", "опасность"), TextTable::Warning};
    case Finding::Note:
        break;
    }
    return {text("note", "заметка"), TextTable::Faint};
}

QString indent()
{
    return QString(indentCells, QLatin1Char(' '));
}

/// Lines of whole words.
QStringList wrapped(const QString &paragraph)
{
    QStringList lines {indent()};
    for (const QString &word : paragraph.split(QLatin1Char(' '))) {
        const bool isFull = TextWidth::width(lines.last()) + 1 + TextWidth::width(word) > lineCells;
        if (isFull && lines.last() != indent())
            lines.append(indent());
        if (lines.last() != indent())
            lines.last() += QLatin1Char(' ');
        lines.last() += word;
    }
    return lines;
}

QString shownExamples(const QStringList &examples)
{
    QStringList shown;
    for (const QString &example : examples)
        shown.append(TextWidth::elided(TextWidth::printable(example), lineCells));
    return shown.join(QLatin1String("; "));
}

QStringList details(const Finding &finding)
{
    QStringList lines {finding.id + QLatin1String(": ") + finding.title};
    lines += wrapped(text("Harm: ", "Вред: ") + finding.harm);
    QStringList remedy = finding.remedy.split(QLatin1Char('\n'));
    lines += wrapped(text("Remedy: ", "Что делать: ") + remedy.takeFirst());
    for (const QString &statement : remedy)
        lines.append(indent() + indent() + statement);
    if (!finding.examples.isEmpty())
        lines += wrapped(text("For example: ", "Например: ") + shownExamples(finding.examples));
    lines.append(QString());
    return lines;
}

QString totals(const Findings &findings)
{
    const auto count = [&findings](Finding::Severity severity) {
        return std::count_if(findings.cbegin(), findings.cend(),
                             [severity](const Finding &finding) { return finding.severity == severity; });
    };
    return text("Errors: %1, warnings: %2, notes: %3.", "Ошибок: %1, опасностей: %2, заметок: %3.")
        .arg(count(Finding::Error))
        .arg(count(Finding::Warning))
        .arg(count(Finding::Note));
}

} // namespace

QJsonArray FindingOutput::json(const Findings &findings)
{
    QJsonArray rows;
    for (const Finding &finding : findings) {
        rows.append(QJsonObject {{QStringLiteral("id"), finding.id},
                                 {QStringLiteral("severity"), key(finding.severity)},
                                 {QStringLiteral("title"), finding.title},
                                 {QStringLiteral("harm"), finding.harm},
                                 {QStringLiteral("remedy"), finding.remedy},
                                 {QStringLiteral("count"), finding.count},
                                 {QStringLiteral("examples"), QJsonArray::fromStringList(finding.examples)}});
    }
    return rows;
}

QStringList FindingOutput::csvColumns()
{
    return {QStringLiteral("id"),    QStringLiteral("severity"), QStringLiteral("count"),
            QStringLiteral("title"), QStringLiteral("harm"),     QStringLiteral("remedy")};
}

TextTable FindingOutput::table(const Findings &findings)
{
    TextTable table({{text("Severity", "Важность")},
                     {text("Finding", "Находка")},
                     {text("Count", "Число"), TextTable::Right},
                     {text("What", "Что")}});
    for (const Finding &finding : findings) {
        table.addRow(
            {severityCell(finding.severity), finding.id, QString::number(finding.count), finding.title});
        for (const QString &line : details(finding))
            table.addFooter(line);
    }
    table.addFooter(findings.isEmpty() ? text("Nothing is wrong.", "Всё в порядке.") : totals(findings));
    return table;
}

#include "garagectl/output/texttable.h"

#include "garagectl/output/textwidth.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr int widestCell = 44;
constexpr int gap = 2;

QString shown(const QString &text)
{
    return TextWidth::elided(TextWidth::printable(text), widestCell);
}

/// Escape sequence of ECMA-48 that starts the colour.
QLatin1String colourOf(TextTable::Tone tone)
{
    switch (tone) {
    case TextTable::Good:
        return QLatin1String("\033[32m");
    case TextTable::Warning:
        return QLatin1String("\033[33m");
    case TextTable::Bad:
        return QLatin1String("\033[31m");
    case TextTable::Faint:
        return QLatin1String("\033[2m");
    case TextTable::Plain:
        break;
    }
    return {};
}

QString coloured(const QString &text, TextTable::Tone tone)
{
    if (tone == TextTable::Plain || text.isEmpty())
        return text;
    return colourOf(tone) + text + QLatin1String("\033[0m");
}

QString withoutTrailingBlanks(QString line)
{
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line + QLatin1Char('\n');
}

} // namespace

QString TextTable::toText(bool withColours) const
{
    const QVector<int> cells = widths();
    const auto lineOf = [&](const Row &row) {
        QString line;
        for (int column = 0; column < m_columns.size(); ++column) {
            const QString content = shown(row.at(column).text);
            const QString blanks(cells.at(column) - TextWidth::width(content), QLatin1Char(' '));
            const QString painted = withColours ? coloured(content, row.at(column).tone) : content;
            line += m_columns.at(column).alignment == Right ? QString(blanks + painted)
                                                            : QString(painted + blanks);
            line += QString(gap, QLatin1Char(' '));
        }
        return withoutTrailingBlanks(line);
    };

    QString output;
    if (!m_rows.isEmpty()) {
        Row titles;
        for (const Column &column : m_columns)
            titles.append(column.title);
        const int total = std::accumulate(cells.cbegin(), cells.cend(), gap * int(cells.size() - 1));
        output = lineOf(titles) + QString(total, QChar(0x2500)) + QLatin1Char('\n');
    }
    for (const Row &row : m_rows)
        output += lineOf(row);
    if (!m_rows.isEmpty() && !m_footer.isEmpty())
        output += QLatin1Char('\n');
    for (const QString &line : m_footer)
        output += line + QLatin1Char('\n');
    return output;
}

QVector<int> TextTable::widths() const
{
    QVector<int> widths;
    for (int column = 0; column < m_columns.size(); ++column) {
        int widest = TextWidth::width(shown(m_columns.at(column).title));
        for (const Row &row : m_rows)
            widest = std::max(widest, TextWidth::width(shown(row.at(column).text)));
        widths.append(widest);
    }
    return widths;
}

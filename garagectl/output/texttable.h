#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A table for people, aligned by the width of its texts on a terminal.
class TextTable final
{
public:
    enum Alignment { Left, Right };
    enum Tone { Plain, Good, Warning, Bad, Faint }; ///< a colour, where there are colours

    struct Column
    {
        QString title;
        Alignment alignment = Left;
    };
    struct Cell
    {
        Cell(const QString &cellText, Tone cellTone = Plain) : text(cellText), tone(cellTone) { }

        QString text; ///< any; shown on one line, elided
        Tone tone = Plain;
    };
    using Row = QVector<Cell>; ///< one per column

    explicit TextTable(const QVector<Column> &columns) : m_columns(columns) { }

    void addRow(const Row &row) { m_rows.append(row); }
    /// A line below the table.
    void addFooter(const QString &line) { m_footer.append(line); }

    /// Ends with a line feed. Without rows the titles are left out.
    QString toText(bool withColours) const;

private:
    QVector<int> widths() const;

    const QVector<Column> m_columns;
    QVector<Row> m_rows;
    QStringList m_footer;
};

#pragma once

#include <QFont>
#include <QPointer>
#include <QString>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QVector>

#include <optional>

/// How high a style makes a cell of so many text lines. A view needs the heights of all its rows at once, and
/// counting lines is much faster than laying their texts out. GUI thread only.
class LineHeights final
{
public:
    /// For the cell's font and style, with this text and with no icon or check box. None for a text that may
    /// need another font, whose lines have other heights, and for a style whose sizes may change at any time.
    std::optional<int> height(const QString &text, const QStyleOptionViewItem &cell);

private:
    void measure(const QStyleOptionViewItem &cell);

    QPointer<const QStyle> m_style;
    QFont m_font;
    int m_dpi = 0;
    bool m_areLinesEven = false; ///< whatever letters they have
    QVector<int> m_heights; ///< by the number of lines; -1: not measured yet
};

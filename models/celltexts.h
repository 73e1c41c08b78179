#pragma once

#include <QCache>
#include <QFont>
#include <QString>
#include <QStyleOptionViewItem>
#include <QTextLayout>

#include <memory>
#include <optional>

/// The texts of a table's cells, laid out as Qt's styles lay them out. They are kept, because a table paints
/// the same texts again whenever it is scrolled or its records are read again. GUI thread only.
class CellTexts final
{
public:
    struct Text
    {
        std::optional<QFont> font; ///< condensed if that makes the text fit; none if it is too wide for that
        QString cut; ///< a text that is too wide, without the ends of its lines that ElideRight hides anyway
        std::unique_ptr<QTextLayout> layout; ///< with "…" at the end of each line that is too wide
    };

    /// The text of a cell for a room of that many pixels. Valid until the next call.
    const Text &text(const QStyleOptionViewItem &cell, int width);

private:
    struct Key
    {
        QString text;
        QFont font;
        int width = 0;
        int alignment = 0; ///< Qt::Alignment bits
        Qt::LayoutDirection direction = Qt::LeftToRight;

        friend bool operator==(const Key &a, const Key &b)
        {
            return a.width == b.width && a.alignment == b.alignment && a.direction == b.direction
                && a.text == b.text && a.font == b.font;
        }
        friend uint qHash(const Key &key) { return uint(::qHash(key.text)) ^ uint(key.width); }
    };

    static std::unique_ptr<Text> laidOut(const Key &key);

    static constexpr int mostCost = 1000; ///< texts of less than 100 letters: more than a large screen shows
    static constexpr int lettersPerCost = 100;
    QCache<Key, Text> m_texts {mostCost};
};

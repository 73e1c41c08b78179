#pragma once

#include "models/celltexts.h"
#include "models/lineheights.h"

#include <QStyledItemDelegate>

#include <optional>

/// Draws cells with a one-pixel grid in the palette's Midlight colour and never a focus frame. Numbers have
/// ASCII digits and no group separators. A text that is up to 15 % too wide is condensed; a wider one is
/// elided and shown whole as a tool tip. Text over a background that the model sets is dark in every palette.
class GridDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Leaves the grid's pen on the painter.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// With a width of -1, as QTreeView asks for the heights of its rows, only the height is meant.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// The editor fills the cell.
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    /// Writes nothing if the editor's text is the one that it was opened with.
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    /// Of a huge text only the beginning, so that its layout is quick and its row not higher than a view.
    QString displayText(const QVariant &value, const QLocale &locale) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

protected:
    /// Whether the text of the cell must be written again even if it did not change, unless it is empty.
    virtual bool isUnsaved(const QModelIndex &index) const;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
    /// Qt's styled painting of an option that is complete, condensed if that makes its text fit.
    void paintContent(QPainter *painter, QStyleOptionViewItem cell) const;
    /// Whether the whole text of an option that is complete is shown, condensed if need be.
    static bool fits(const QStyleOptionViewItem &cell);
    /// The cell's outline; its pen stays on the painter.
    static void paintGrid(QPainter *painter, const QStyleOptionViewItem &option);
    /// What a cell's tool tip contains besides a text that is cut off; nothing by default.
    virtual QString explanation(const QModelIndex &index) const;

private:
    std::optional<int> heightByLines(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    bool isCut(const QStyleOptionViewItem &option, const QModelIndex &index) const;

    mutable LineHeights m_lineHeights;
    mutable CellTexts m_texts;
};

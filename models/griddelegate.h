#pragma once

#include <QStyledItemDelegate>

/// Draws cells with a one-pixel grid in the palette's Midlight colour and never a focus frame. Numbers have
/// ASCII digits and no group separators. A text that its cell cuts off is shown whole as a tool tip.
class GridDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Leaves the grid's pen on the painter.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// The editor fills the cell.
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    /// Writes nothing if the editor's text is the one that it was opened with.
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    QString displayText(const QVariant &value, const QLocale &locale) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

protected:
    /// Whether the text of the cell must be written again even if it did not change, unless it is empty.
    virtual bool isUnsaved(const QModelIndex &index) const;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};

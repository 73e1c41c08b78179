#pragma once

#include "models/griddelegate.h"

class QTreeView;
class ServiceReglamentModel;

/// The cells of the settings page's two tables. The limits of the schedule are broken into two or three lines
/// where they would not fit on one; all rows are as high as the cell with most lines needs. The name of an
/// operation that is not stored is written also when it was confirmed unchanged, because storing it may have
/// failed before.
class SettingsDelegate final : public GridDelegate
{
    Q_OBJECT
public:
    using GridDelegate::GridDelegate;

    /// Of the schedule only the last column measures all cells: once for a layout, not once for each column.
    /// While the schedule is hidden, nothing is measured and a row has the height of one line.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    bool isUnsaved(const QModelIndex &index) const override;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    /// The lines of the cell with most of them in the schedule that the view shows.
    int mostLines(const QStyleOptionViewItem &option, const QTreeView &view,
                  const ServiceReglamentModel &schedule) const;
};

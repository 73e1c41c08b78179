#pragma once

#include <QHeaderView>

#include <optional>

class QTreeView;

/// The column titles of a table. One that is up to 15 % too wide is condensed; a wider one is elided at the
/// right and shown whole as a tool tip.
class ColumnTitles final : public QHeaderView
{
    Q_OBJECT
public:
    /// Replaces the view's titles; to be called before the view has its model and widths.
    static void install(QTreeView *view);

protected:
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;
    bool viewportEvent(QEvent *event) override;

private:
    explicit ColumnTitles(QTreeView *view);

    QString title(int section) const;
    /// The font that shows the whole title; none if it is too wide.
    std::optional<QFont> fittingFont(int section) const;
};

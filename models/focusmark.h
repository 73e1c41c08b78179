#pragma once

#include <QObject>

class QTreeView;

/// Shows where the keys work in a table whose delegate draws no focus: a frame around the current cell or,
/// without one, around the whole table. Only while the table has the focus and is used with keys. GUI thread
/// only.
class FocusMark final : public QObject
{
    Q_OBJECT
public:
    /// The view owns the mark. To be called after all other filters that paint on the viewport: those
    /// installed later would paint twice.
    static void install(QTreeView *view);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit FocusMark(QTreeView *view);

    void setUsedByKeys(bool isUsedByKeys);
    void paint() const;

    QTreeView *const m_view;
    bool m_isUsedByKeys = false;
    bool m_isPainting = false;
};

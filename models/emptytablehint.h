#pragma once

#include <QObject>

#include <functional>

class QTreeView;

/// Says in an empty table what will be there, or why there is nothing: a text in the palette's placeholder
/// colour, painted in the middle of the viewport. A font that is too large for the viewport is reduced. The
/// text is no part of the model, and no widget. GUI thread only.
class EmptyTableHint final : public QObject
{
    Q_OBJECT
public:
    using Text = std::function<QString()>;

    /// The text is requested for each painting of the empty table; an empty one paints nothing. The view owns
    /// the hint and has its model.
    static void install(QTreeView *view, const Text &text);

    /// What is shown now; empty if the table has rows.
    QString text() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    EmptyTableHint(QTreeView *view, const Text &text);

    void paint(const QString &text) const;

    QTreeView *const m_view;
    const Text m_text;
};

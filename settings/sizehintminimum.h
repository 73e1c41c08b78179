#pragma once

#include <QObject>

class QDialog;

/// Keeps a dialog at least as large as its size hint, at any font, as far as the
/// screen allows that.
class SizeHintMinimum final : public QObject
{
    Q_OBJECT
public:
    /// The dialog owns this object.
    explicit SizeHintMinimum(QDialog *dialog);

    bool eventFilter(QObject *watched, QEvent *event) override;
};

#pragma once

#include <QComboBox>

/// A combo box whose chosen text stays on one line: a text with line feeds, as operations may have, is shown
/// with blanks in their place, and condensed or elided if it is too long. The texts themselves are unchanged.
class SingleLineComboBox final : public QComboBox
{
    Q_OBJECT
public:
    explicit SingleLineComboBox(QWidget *parent = nullptr);

signals:
    /// The current index has changed, by the user or by a call; `text` is that of the new current entry.
    /// Slots of forms are connected to this signal by name; Qt 6 has dropped QComboBox's own.
    void currentIndexChanged(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
};

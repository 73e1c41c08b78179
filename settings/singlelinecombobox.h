#pragma once

#include <QComboBox>

/// A combo box whose chosen text stays on one line: a text with line feeds, as operations may have, is shown
/// with blanks in their place, and condensed or elided if it is too long. The texts themselves are unchanged.
class SingleLineComboBox final : public QComboBox
{
    Q_OBJECT
public:
    using QComboBox::QComboBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};

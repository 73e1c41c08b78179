#include "settings/singlelinecombobox.h"

#include "models/condensedfont.h"
#include "models/plaintext.h"

#include <QStylePainter>

SingleLineComboBox::SingleLineComboBox(QWidget *parent) : QComboBox(parent)
{
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { emit currentIndexChanged(itemText(index)); });
}

void SingleLineComboBox::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const QString line = PlainText::singleLine(option.currentText);
    QStylePainter painter(this);
    // Qt's size hint measures the ink of the entries, which is a little narrower than the entries.
    const std::optional<QFont> condensed = condensedFont(line, font(), field.width());
    if (condensed)
        painter.setFont(*condensed);
    option.currentText =
        condensed ? line : option.fontMetrics.elidedText(line, Qt::ElideRight, field.width());
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

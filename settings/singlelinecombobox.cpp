#include "settings/singlelinecombobox.h"

#include "models/plaintext.h"

#include <QStylePainter>

void SingleLineComboBox::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const QString line = PlainText::singleLine(option.currentText);
    option.currentText = option.fontMetrics.elidedText(line, Qt::ElideRight, field.width());

    QStylePainter painter(this);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

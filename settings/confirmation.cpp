#include "settings/confirmation.h"

#include "settings/modaldialog.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

bool confirmDeletion(QWidget *owner, const QString &subject)
{
    const auto translated = [owner](const char *text) {
        return QCoreApplication::translate(owner->metaObject()->className(), text);
    };
    ModalDialog<QMessageBox> question(owner);
    question->setIcon(QMessageBox::Question);
    question->setWindowTitle(translated("Подтверждение"));
    question->setText(translated("Точно удалить?"));
    question->setInformativeText(subject);
    // setTextFormat() does not cover the informative text.
    for (QLabel *label : question->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
    question->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    question->button(QMessageBox::Yes)->setText(translated("Да"));
    question->button(QMessageBox::No)->setText(translated("Нет"));
    question->setDefaultButton(QMessageBox::No);
    return question.exec() == QMessageBox::Yes;
}

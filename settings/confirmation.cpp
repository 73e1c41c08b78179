#include "settings/confirmation.h"

#include "settings/modaldialog.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>

bool confirmDeletion(QWidget *owner)
{
    const auto translated = [owner](const char *text) {
        return QCoreApplication::translate(owner->metaObject()->className(), text);
    };
    ModalDialog<QMessageBox> question(owner);
    question->setIcon(QMessageBox::Question);
    question->setWindowTitle(translated("Подтверждение"));
    question->setText(translated("Точно удалить?"));
    question->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    question->button(QMessageBox::Yes)->setText(translated("Да"));
    question->button(QMessageBox::No)->setText(translated("Нет"));
    return question.exec() == QMessageBox::Yes;
}

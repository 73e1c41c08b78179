#include "host/validation/dialogresponder.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

DialogResponder::DialogResponder(bool accept)
{
    m_poll.setInterval(50);
    QObject::connect(&m_poll, &QTimer::timeout, &m_poll, [this, accept] { respond(accept); });
    m_poll.start();
}

void DialogResponder::respond(bool accept)
{
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (!dialog)
        return;
    m_poll.stop();
    m_responded = true;
    auto *question = qobject_cast<QMessageBox *>(dialog);
    if (question && accept)
        question->button(QMessageBox::Yes)->click();
    else
        dialog->done(accept ? QDialog::Accepted : QDialog::Rejected);
}

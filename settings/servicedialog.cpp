#include "settings/servicedialog.h"

#include "settings/sizehintminimum.h"
#include "ui_servicedialog.h"

#include <QJsonObject>
#include <QPushButton>

namespace {

const QLatin1String noneText("--");

QString fullName(const QJsonObject &person)
{
    QStringList parts;
    for (const QLatin1String key :
         {QLatin1String("lastName"), QLatin1String("firstName"), QLatin1String("midName")})
        parts.append(person.value(key).toString());
    parts.removeAll(QString());
    return parts.join(QLatin1Char(' '));
}

/// -1 as well for an empty combo box.
int chosenId(const QComboBox &combo)
{
    const QVariant id = combo.currentData();
    return id.isValid() ? id.toInt() : noId;
}

} // namespace

ServiceDialog::ServiceDialog(QWidget *parent) : QDialog(parent), m_ui(std::make_unique<Ui::ServiceDialog>())
{
    m_ui->setupUi(this);
    new SizeHintMinimum(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("ОК"));
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(tr("Отмена"));
}

ServiceDialog::~ServiceDialog() = default;

void ServiceDialog::setOperations(const ServiceOperations &operations)
{
    m_ui->cbOperation->clear();
    for (auto it = operations.cbegin(); it != operations.cend(); ++it)
        m_ui->cbOperation->addItem(it.value(), it.key());
    m_ui->cbOperation->addItem(noneText, noId);
}

void ServiceDialog::setPersonal(const QJsonArray &personal)
{
    m_ui->cbPersonal->clear();
    m_ui->cbPersonal->addItem(noneText, noId);
    for (const QJsonValue &value : personal) {
        const QJsonObject person = value.toObject();
        m_ui->cbPersonal->addItem(QIcon(), fullName(person), person.value(QLatin1String("id")).toInt(noId));
    }
}

void ServiceDialog::setOperation(int opId)
{
    const int index = m_ui->cbOperation->findData(opId);
    m_ui->cbOperation->setCurrentIndex(index >= 0 ? index : m_ui->cbOperation->count() - 1);
}

void ServiceDialog::setDateTime(const QDateTime &dateTime)
{
    // The field would show the clock time of any other zone and later read it as local.
    m_ui->deOperationDateTime->setDateTime(dateTime.toLocalTime());
    m_initialDateTime = m_ui->deOperationDateTime->dateTime();
}

void ServiceDialog::setComment(const QString &text)
{
    m_ui->teComments->setPlainText(text);
}

void ServiceDialog::setPersonName(const QString &text)
{
    m_ui->cbPersonal->setCurrentText(text);
}

void ServiceDialog::lockOperation()
{
    m_ui->cbOperation->setEnabled(false);
}

void ServiceDialog::setTitleSuffix(const QString &text)
{
    setWindowTitle(windowTitle() + QLatin1String(" - ") + text);
}

void ServiceDialog::setComplaintMode()
{
    m_ui->lComment->setText(tr("Жалоба на карт\nили задание механику"));
    setWindowTitle(tr("Задание"));
    m_ui->teComments->setFocus();
}

QDateTime ServiceDialog::chosenDateTime() const
{
    QDateTime chosen = m_ui->deOperationDateTime->dateTime();
    if (chosen != m_initialDateTime)
        chosen.setTime(QTime(chosen.time().hour(), chosen.time().minute()));
    return chosen;
}

void ServiceDialog::accept()
{
    m_dateTime = chosenDateTime();
    m_personId = chosenId(*m_ui->cbPersonal);
    m_operationId = chosenId(*m_ui->cbOperation);
    m_comment = m_ui->teComments->toPlainText();
    const QString operation = m_ui->cbOperation->currentText();
    m_operationName = operation == noneText ? QString() : operation;
    m_personName = m_ui->cbPersonal->currentIndex() >= 1 ? m_ui->cbPersonal->currentText() : QString();
    QDialog::accept();
}

#include "settings/reglamentsettingsdialog.h"

#include "data/numbertext.h"
#include "data/records.h"
#include "models/plaintext.h"
#include "settings/sizehintminimum.h"
#include "ui_reglamentsettingsdialog.h"

#include <QPushButton>

namespace {

QString limitText(int limit)
{
    return limit == 0 ? QString() : QString::number(limit);
}

} // namespace

ReglamentSettingsDialog::ReglamentSettingsDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ReglamentSettingsDialog>())
{
    m_ui->setupUi(this);
    new SizeHintMinimum(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_ui->buttonBox->button(QDialogButtonBox::Ok)->setText(tr("ОК"));
    m_ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(tr("Отмена"));
}

ReglamentSettingsDialog::~ReglamentSettingsDialog() = default;

void ReglamentSettingsDialog::setModelName(const QString &text)
{
    m_ui->lModelName->setText(text);
}

void ReglamentSettingsDialog::setOperationName(const QString &text)
{
    m_ui->gbParameterName->setTitle(PlainText::singleLine(text));
}

void ReglamentSettingsDialog::setTimeLimit(int seconds)
{
    m_ui->leTime->setText(seconds == 0 ? QString() : QString::asprintf("%.1f", seconds / secondsPerHour));
}

void ReglamentSettingsDialog::setRunsLimit(int runs)
{
    m_ui->leRunsCount->setText(limitText(runs));
}

void ReglamentSettingsDialog::setLapsLimit(int laps)
{
    m_ui->leLapsCount->setText(limitText(laps));
}

void ReglamentSettingsDialog::setLimits(const Limits &limits)
{
    setTimeLimit(limits.seconds);
    setRunsLimit(limits.runs);
    setLapsLimit(limits.laps);
}

void ReglamentSettingsDialog::accept()
{
    m_limits = {secondsFromHours(m_ui->leTime->text()), m_ui->leRunsCount->text().toInt(),
                m_ui->leLapsCount->text().toInt()};
    QDialog::accept();
}

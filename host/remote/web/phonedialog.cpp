#include "host/remote/web/phonedialog.h"

#include "host/remote/web/qrcode.h"
#include "host/remote/web/webservice.h"
#include "host/widgets/noticelabel.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int clientsInterval = 1000; // milliseconds
} // namespace

PhoneDialog::PhoneDialog(WebService &web, QWidget *parent)
    : QDialog(parent)
    , m_web(web)
    , m_address(new QComboBox)
    , m_toggle(new QPushButton)
    , m_error(new NoticeLabel("phoneErrorLabel"))
    , m_code(new QrCode)
    , m_url(new QLabel)
    , m_hint(new QLabel)
    , m_clients(new QListWidget)
{
    setWindowTitle(tr("Page for phones"));
    setObjectName(QStringLiteral("phoneDialog"));
    m_address->setObjectName(QStringLiteral("phoneAddressComboBox"));
    m_address->setEditable(true);
    m_address->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string &address : WebAddress::own())
        m_address->addItem(
            QString::fromStdString(WebAddress::Endpoint {address, WebAccess().endpoint.port}.text()));
    m_toggle->setObjectName(QStringLiteral("phoneTogglePushButton"));
    m_toggle->setAutoDefault(false);
    m_code->setObjectName(QStringLiteral("phoneQrCode"));
    m_url->setObjectName(QStringLiteral("phoneUrlLabel"));
    m_url->setAlignment(Qt::AlignCenter);
    m_url->setTextFormat(Qt::PlainText);
    m_url->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_hint->setObjectName(QStringLiteral("phoneHintLabel"));
    m_hint->setWordWrap(true);
    m_clients->setObjectName(QStringLiteral("phoneClientsListWidget"));
    m_clients->setSelectionMode(QAbstractItemView::NoSelection);
    m_clients->setFocusPolicy(Qt::NoFocus);

    auto *addressLabel = new QLabel(tr("Address"));
    addressLabel->setBuddy(m_address);
    auto *addressRow = new QHBoxLayout;
    addressRow->addWidget(addressLabel);
    addressRow->addWidget(m_address, 1);
    addressRow->addWidget(m_toggle);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(tr("Close"));
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(addressRow);
    layout->addWidget(m_error);
    layout->addWidget(m_code, 1);
    layout->addWidget(m_url);
    layout->addWidget(m_hint);
    layout->addWidget(new QLabel(tr("Connected:")));
    layout->addWidget(m_clients, 1);
    layout->addWidget(buttons);
    resize(420, 560);

    m_clientsTimer.setInterval(clientsInterval);
    connect(&m_clientsTimer, &QTimer::timeout, this, &PhoneDialog::refreshClients);
    connect(m_toggle, &QPushButton::clicked, this, &PhoneDialog::toggle);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&m_web, &WebService::runningChanged, this, &PhoneDialog::refresh);
    refresh();
}

void PhoneDialog::serve()
{
    if (!m_web.isRunning())
        toggle();
}

void PhoneDialog::toggle()
{
    m_error->showText(QString());
    if (m_web.isRunning()) {
        m_web.stop();
        return;
    }
    const auto endpoint = WebAddress::parse(m_address->currentText().trimmed().toStdString());
    if (!endpoint) {
        m_error->showText(tr("The address must be like 192.168.1.5:8080"));
        return;
    }
    WebAccess access;
    access.endpoint = *endpoint;
    if (const Result result = m_web.start(access); !result)
        m_error->showText(result.errorText());
}

void PhoneDialog::refresh()
{
    const bool isRunning = m_web.isRunning();
    m_address->setEnabled(!isRunning);
    m_toggle->setText(isRunning ? tr("Stop") : tr("Start"));
    m_url->setText(m_web.url());
    m_code->setText(m_web.url());
    m_hint->setText(hintText());
    refreshClients();
}

QString PhoneDialog::hintText() const
{
    if (!m_web.isRunning())
        return tr("The page is not served.");
    QString hint = tr("Open this address on the phone and sign in with the service code.");
    if (m_web.isEncrypted())
        return hint;
    return hint + QLatin1Char(' ')
        + tr("The connection is not encrypted: use it only in a network that you trust.");
}

void PhoneDialog::refreshClients()
{
    QStringList lines;
    for (const WebSessions::Client &client : m_web.clients()) {
        const QString line =
            tr("%1, %2").arg(QString::fromStdString(client.person), QString::fromStdString(client.address));
        lines.append(client.streams > 1 ? tr("%1 (pages: %2)").arg(line).arg(client.streams) : line);
    }
    if (lines.isEmpty())
        lines.append(tr("nobody"));
    QStringList shown;
    for (int row = 0; row < m_clients->count(); ++row)
        shown.append(m_clients->item(row)->text());
    if (shown == lines)
        return;
    m_clients->clear();
    m_clients->addItems(lines);
}

void PhoneDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    refreshClients();
    m_clientsTimer.start();
}

void PhoneDialog::hideEvent(QHideEvent *event)
{
    QDialog::hideEvent(event);
    m_clientsTimer.stop();
}

#include "host/remote/remotepanel.h"

#include "host/database/timestamp.h"
#include "host/fleet/fleetcontroller.h"
#include "host/remote/remoteside.h"
#include "host/remote/web/phonedialog.h"
#include "host/widgets/noticelabel.h"
#include "host/widgets/tableviews.h"
#include "host/widgets/tailfollower.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {

constexpr int shownRecords = 300;
constexpr int logLines = 500;
constexpr int refillDelay = 150; // milliseconds

QTableView *makeReadOnlyTable(QStandardItemModel *model, const char *name)
{
    QTableView *view = TableViews::make(model, name);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    return view;
}

/// Comments and names may hold line breaks, which a row has no space for.
QList<QStandardItem *> makeSingleLineRow(QStringList texts)
{
    for (QString &text : texts)
        text = text.simplified();
    return TableViews::makeRow(texts);
}

bool isSame(const PendingService &one, const PendingService &other)
{
    return one.carId == other.carId && one.opId == other.opId && one.localId == other.localId;
}

QString idList(const QVector<int> &ids)
{
    QStringList texts;
    for (const int id : ids)
        texts.append(QString::number(id));
    return texts.join(QLatin1String(", "));
}

} // namespace

RemotePanel::RemotePanel(RemoteSide &remote, FleetController &fleet, WebService &web, QWidget *parent)
    : QWidget(parent)
    , m_remote(remote)
    , m_fleet(fleet)
    , m_web(web)
    , m_pending(new QStandardItemModel(this))
    , m_records(new QStandardItemModel(this))
    , m_pendingView(makeReadOnlyTable(m_pending, "pendingTableView"))
    , m_recordsView(makeReadOnlyTable(m_records, "remoteRecordsTableView"))
    , m_person(new QComboBox)
    , m_channel(new QComboBox)
    , m_car(new QComboBox)
    , m_comment(new QLineEdit)
    , m_check(new NoticeLabel("archiveCheckLabel"))
    , m_log(new QPlainTextEdit)
{
    m_pending->setHorizontalHeaderLabels({tr("Kart"), tr("Model"), tr("Operation"), tr("Last done")});
    m_records->setHorizontalHeaderLabels(
        {tr("No."), tr("Kart"), tr("Operation"), tr("Done"), tr("Person"), tr("State")});
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(makePendingBox(), 5);
    layout->addWidget(makeRecordsBox(), 7);

    // Records may change many times in a row; the tables follow a little later, once.
    m_recordsTimer.setSingleShot(true);
    m_recordsTimer.setInterval(refillDelay);
    connect(&m_recordsTimer, &QTimer::timeout, this, &RemotePanel::refillRecords);
    connect(&m_remote, &RemoteSide::recordsChanged, &m_recordsTimer, QOverload<>::of(&QTimer::start));
    connect(&m_remote, &RemoteSide::pendingChanged, this, &RemotePanel::refillPending);
    connect(&m_remote, &RemoteSide::logged, m_log, [this](const QString &text) {
        m_log->appendPlainText(QTime::currentTime().toString(QStringLiteral("hh:mm:ss  ")) + text);
    });
    connect(&m_fleet, &FleetController::carsAnnounced, this, &RemotePanel::refillCars);
    connect(&m_fleet, &FleetController::peopleAnnounced, this, &RemotePanel::refillPeople);
    refillPending();
    refillRecords();
    refillPeople();
    refillCars();
}

QWidget *RemotePanel::makePendingBox()
{
    auto *box = new QGroupBox(tr("Due services"));
    auto *layout = new QVBoxLayout(box);
    TableViews::setColumnWidths(
        *m_pendingView,
        {QStringLiteral("00000"), QStringLiteral("Молния+"), QStringLiteral("Замена цепи и звёзд++")});
    m_person->setObjectName(QStringLiteral("remotePersonComboBox"));
    m_channel->setObjectName(QStringLiteral("remoteChannelComboBox"));
    m_comment->setObjectName(QStringLiteral("remoteCommentLineEdit"));
    m_channel->addItem(tr("web service (remote_service_data)"), int(RemoteSide::Channel::Service));
    m_channel->addItem(tr("remote control (remote_control_data)"), int(RemoteSide::Channel::RemoteControl));
    auto *done = new QPushButton(tr("Done"));
    done->setObjectName(QStringLiteral("remoteDonePushButton"));
    auto *form = new QFormLayout;
    form->addRow(tr("Person"), m_person);
    form->addRow(tr("Comment"), m_comment);
    form->addRow(tr("Sent by"), m_channel);
    form->addRow(done);
    layout->addWidget(m_pendingView, 1);
    layout->addLayout(form);
    layout->addWidget(makeCarRow());
    connect(done, &QPushButton::clicked, this, &RemotePanel::completeCurrent);
    connect(m_pendingView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &RemotePanel::showStoredText);
    TableViews::enableWithSelection(*done, *m_pendingView);
    return box;
}

QWidget *RemotePanel::makeCarRow()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_car->setObjectName(QStringLiteral("remoteCarComboBox"));
    auto *switchCar = new QPushButton(tr("Switch availability"));
    switchCar->setObjectName(QStringLiteral("switchCarPushButton"));
    layout->addWidget(m_car, 1);
    layout->addWidget(switchCar);
    connect(switchCar, &QPushButton::clicked, this, [this] {
        if (m_car->currentIndex() >= 0)
            m_remote.switchAvailability(m_car->currentData().toInt());
    });
    return row;
}

QWidget *RemotePanel::makeRecordsBox()
{
    auto *box = new QGroupBox(tr("Records of the remote side"));
    auto *layout = new QVBoxLayout(box);
    TableViews::setColumnWidths(*m_recordsView,
                                {QStringLiteral("0000"), QStringLiteral("00000"),
                                 QStringLiteral("Замена цепи и звёзд++"), QStringLiteral("00.00.0000 00:00"),
                                 QStringLiteral("Кузнецов Алексей")});
    auto *atOnce = new QCheckBox(tr("Send at once"));
    atOnce->setChecked(true);
    atOnce->setObjectName(QStringLiteral("sendAtOnceCheckBox"));
    auto *phone = new QPushButton(tr("Phone"));
    phone->setObjectName(QStringLiteral("phonePushButton"));
    auto *send = new QPushButton(tr("Send waiting"));
    send->setObjectName(QStringLiteral("sendWaitingPushButton"));
    m_log->setObjectName(QStringLiteral("remoteLogPlainTextEdit"));
    m_log->setReadOnly(true);
    m_log->setMaximumBlockCount(logLines);
    new TailFollower(*m_log);
    auto *row = new QHBoxLayout;
    row->addWidget(atOnce);
    row->addStretch();
    row->addWidget(phone);
    row->addWidget(send);
    layout->addWidget(m_recordsView, 3);
    layout->addLayout(row);
    layout->addWidget(m_check);
    layout->addWidget(m_log, 1);
    connect(atOnce, &QCheckBox::toggled, &m_remote, &RemoteSide::setSendsAtOnce);
    connect(phone, &QPushButton::clicked, this, &RemotePanel::showPhoneDialog);
    connect(send, &QPushButton::clicked, &m_remote, [this] { m_remote.sendWaiting(); });
    return box;
}

void RemotePanel::showPhoneDialog()
{
    if (!m_phone)
        m_phone = new PhoneDialog(m_web, this);
    m_phone->serve();
    m_phone->show();
    m_phone->raise();
    m_phone->activateWindow();
}

void RemotePanel::refillPending()
{
    const bool isChosen = m_pendingView->currentIndex().isValid();
    m_shownPending = m_remote.pending();
    m_pending->removeRows(0, m_pending->rowCount());
    for (const PendingService &service : qAsConst(m_shownPending)) {
        const QString name = service.opId < 0 ? tr("Complaint: %1").arg(service.opName) : service.opName;
        m_pending->appendRow(
            makeSingleLineRow({service.carNumber, service.carModel, name, localTimeText(service.since)}));
        if (isChosen && isSame(service, m_chosen))
            m_pendingView->selectRow(m_pending->rowCount() - 1);
    }
}

void RemotePanel::refillRecords()
{
    const QStringList states = {tr("at the track"), tr("waiting"), tr("sent"), tr("archived"), tr("deleted")};
    QHash<int, QString> numbers;
    for (const HostCar &car : m_fleet.cars().list())
        numbers.insert(car.id, car.number);
    m_records->removeRows(0, m_records->rowCount());
    for (const RemoteRecord &record : m_remote.store().latest(shownRecords))
        m_records->appendRow(makeSingleLineRow({QString::number(record.id), numbers.value(record.carId),
                                                record.opName, localTimeText(record.doneTime),
                                                record.operatorName, states.value(record.state)}));
    showCheck();
}

void RemotePanel::refillPeople()
{
    const int chosen = m_person->currentIndex();
    m_person->clear();
    for (const HostPerson &person : m_fleet.people().list())
        m_person->addItem(tr("%1 %2 (code %3)").arg(person.lastName, person.firstName, person.serviceCode));
    m_person->setCurrentIndex(qBound(m_person->count() > 0 ? 0 : -1, chosen, m_person->count() - 1));
}

void RemotePanel::refillCars()
{
    const int chosen = m_car->currentData().toInt();
    m_car->clear();
    for (const HostCar &car : m_fleet.cars().list())
        m_car->addItem(tr("%1 - %2 (%3)")
                           .arg(car.number, car.model, car.available ? tr("available") : tr("not available")),
                       car.id);
    m_car->setCurrentIndex(std::max(0, m_car->findData(chosen)));
}

/// The comment of a completed service replaces the text of the record, so it starts with that text. A
/// refilled list leaves what is being typed for the same record.
void RemotePanel::showStoredText()
{
    const int row = m_pendingView->currentIndex().row();
    if (row < 0 || row >= m_shownPending.size())
        return;
    const PendingService &work = m_shownPending.at(row);
    if (isSame(work, m_chosen))
        return;
    m_chosen = work;
    m_comment->setText(m_remote.storedText(work));
}

void RemotePanel::completeCurrent()
{
    const int row = m_pendingView->currentIndex().row();
    const QVector<HostPerson> people = m_fleet.people().list();
    if (row < 0 || row >= m_shownPending.size())
        return;
    const PendingService work = m_shownPending.at(row);
    if (!m_remote.complete(work, people.value(m_person->currentIndex()), m_comment->text(),
                           RemoteSide::Channel(m_channel->currentData().toInt())))
        return;
    // A second click must not complete it again, without its text.
    m_chosen = PendingService();
    m_pendingView->setCurrentIndex({});
    m_comment->clear();
}

void RemotePanel::showCheck()
{
    const ArchiveFindings findings = m_remote.checkArchive();
    QStringList parts;
    if (!findings.errorText.isEmpty())
        parts.append(tr("failed, %1").arg(findings.errorText));
    if (!findings.missing.isEmpty())
        parts.append(tr("archived records missing from the database: %1").arg(idList(findings.missing)));
    if (!findings.notDeleted.isEmpty())
        parts.append(tr("deleted records still in the database: %1").arg(idList(findings.notDeleted)));
    if (findings.isGood())
        m_check->showText(tr("Comparison: %1 archived, all in the database").arg(findings.archived),
                          NoticeLabel::Good);
    else
        m_check->showText(tr("Comparison: %1").arg(parts.join(QLatin1String("; "))), NoticeLabel::Error);
}

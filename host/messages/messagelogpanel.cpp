#include "host/messages/messagelogpanel.h"

#include "host/messages/eventexamples.h"
#include "host/messages/eventplayer.h"
#include "host/messages/messagelogmodel.h"
#include "host/plugin/pluginhost.h"
#include "host/widgets/noticelabel.h"
#include "host/widgets/tableviews.h"
#include "host/widgets/tailfollower.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

namespace {

QPlainTextEdit *makeJsonEdit(const QString &name)
{
    auto *edit = new QPlainTextEdit;
    edit->setObjectName(name);
    edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    return edit;
}

} // namespace

MessageLogPanel::MessageLogPanel(MessageLogModel &log, PluginHost &plugin, QWidget *parent)
    : QWidget(parent)
    , m_log(log)
    , m_plugin(plugin)
    , m_filter(log)
    , m_table(new QTableView)
    , m_details(makeJsonEdit(QStringLiteral("messageLogDetails")))
{
    m_table->setObjectName(QStringLiteral("messageLogTable"));
    m_table->setModel(&m_filter);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setHighlightSections(false);
    TableViews::setColumnWidths(
        *m_table,
        {QStringLiteral("00:00:00.000"), tr("→ plug-in"), QStringLiteral("garage_stats_updater"),
         QStringLiteral("remote_service_move_to_archive"), QStringLiteral("0 000 000")});
    m_details->setReadOnly(true);
    new TailFollower(*m_table);

    auto *side = new QSplitter(Qt::Vertical);
    side->addWidget(m_details);
    side->addWidget(makeSendBox());
    side->setStretchFactor(0, 3);
    side->setStretchFactor(1, 2);
    auto *splitter = new QSplitter;
    splitter->addWidget(m_table);
    splitter->addWidget(side);
    splitter->setSizes({760, 500});
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeFilterRow());
    layout->addWidget(splitter, 1);

    connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &MessageLogPanel::showCurrent);
    connect(&m_log, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first) { rememberEvent(first); });
    for (int row = 0; row < m_log.rowCount(); ++row)
        rememberEvent(row);
}

MessageLogPanel::~MessageLogPanel() = default;

QWidget *MessageLogPanel::makeFilterRow()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_eventFilter = new QComboBox;
    m_eventFilter->setObjectName(QStringLiteral("eventFilterComboBox"));
    m_eventFilter->addItem(tr("All events"));
    m_eventFilter->setMinimumContentsLength(26);
    auto *text = new QLineEdit;
    text->setObjectName(QStringLiteral("textFilterLineEdit"));
    text->setPlaceholderText(tr("Find in message"));
    layout->addWidget(m_eventFilter);
    layout->addWidget(text, 1);
    const auto addButton = [&](const QString &caption, const char *name, void (MessageLogPanel::*slot)()) {
        auto *button = new QPushButton(caption);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, slot);
        layout->addWidget(button);
        return button;
    };
    TableViews::enableWithSelection(*addButton(tr("Copy"), "copyPushButton", &MessageLogPanel::copyCurrent),
                                    *m_table);
    addButton(tr("Save…"), "savePushButton", &MessageLogPanel::chooseAndSave);
    addButton(tr("Replay…"), "replayPushButton", &MessageLogPanel::chooseAndReplay);
    auto *clear = new QPushButton(tr("Clear"));
    layout->addWidget(clear);

    connect(clear, &QPushButton::clicked, &m_log, &MessageLogModel::clear);
    connect(text, &QLineEdit::textChanged, &m_filter, &MessageLogFilter::setText);
    connect(m_eventFilter, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int index) { m_filter.setEvent(index > 0 ? m_eventFilter->itemText(index) : QString()); });
    return row;
}

QWidget *MessageLogPanel::makeSendBox()
{
    auto *box = new QWidget;
    auto *layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *row = new QHBoxLayout;
    m_eventToSend = new QComboBox;
    m_eventToSend->setObjectName(QStringLiteral("eventToSendComboBox"));
    m_eventToSend->setEditable(true);
    m_eventToSend->setInsertPolicy(
        QComboBox::NoInsert); // Enter would replace the data by those of a new, empty item
    for (const EventExample &example : eventExamples())
        m_eventToSend->addItem(example.event, example.data);
    auto *send = new QPushButton(tr("Send"));
    send->setObjectName(QStringLiteral("sendPushButton"));
    m_dataToSend = makeJsonEdit(QStringLiteral("dataToSendPlainTextEdit"));
    m_dataToSend->setPlainText(m_eventToSend->currentData().toString());
    m_errorLabel = new NoticeLabel("sendErrorLabel");
    row->addWidget(new QLabel(tr("Event for the plug-in")));
    row->addWidget(m_eventToSend, 1);
    row->addWidget(send);
    layout->addLayout(row);
    layout->addWidget(m_dataToSend, 1);
    layout->addWidget(m_errorLabel);

    connect(m_eventToSend, QOverload<int>::of(&QComboBox::activated), this,
            [this] { m_dataToSend->setPlainText(m_eventToSend->currentData().toString()); });
    connect(send, &QPushButton::clicked, this, &MessageLogPanel::sendByHand);
    return box;
}

void MessageLogPanel::showCurrent()
{
    const QModelIndex index = m_filter.mapToSource(m_table->currentIndex());
    const QJsonObject payload = index.isValid() ? m_log.entry(index.row()).data() : QJsonObject();
    m_details->setPlainText(index.isValid() ? QString::fromUtf8(QJsonDocument(payload).toJson()) : QString());
}

void MessageLogPanel::copyCurrent()
{
    const QModelIndex index = m_filter.mapToSource(m_table->currentIndex());
    if (index.isValid())
        QApplication::clipboard()->setText(QString::fromUtf8(m_log.entry(index.row()).toJsonLine()));
}

void MessageLogPanel::chooseAndSave()
{
    const QString fileName = QFileDialog::getSaveFileName(
        this, tr("Save message log"), QStringLiteral("garage-log.jsonl"), tr("JSON lines (*.jsonl)"));
    if (fileName.isEmpty())
        return;
    if (const Result result = m_log.save(fileName); !result)
        QMessageBox::warning(this, tr("Message log not saved"), result.errorText());
}

void MessageLogPanel::chooseAndReplay()
{
    const QString fileName = QFileDialog::getOpenFileName(this, tr("Replay message log"), QString(),
                                                          tr("JSON lines (*.jsonl);;All files (*)"));
    if (!fileName.isEmpty())
        replay(fileName);
}

void MessageLogPanel::replay(const QString &fileName)
{
    m_player = std::make_unique<EventPlayer>(m_plugin);
    if (const Result result = m_player->load(fileName); !result) {
        QMessageBox::warning(this, tr("Message log cannot be replayed"), result.errorText());
        return;
    }
    auto *progress =
        new QProgressDialog(tr("Replaying the message log…"), tr("Stop"), 0, m_player->stepCount(), this);
    progress->setMinimumDuration(500);
    connect(progress, &QProgressDialog::canceled, m_player.get(), &EventPlayer::cancel);
    connect(m_player.get(), &EventPlayer::progress, progress, &QProgressDialog::setValue);
    connect(m_player.get(), &EventPlayer::finished, progress, &QObject::deleteLater);
    connect(m_player.get(), &QObject::destroyed, progress, &QObject::deleteLater);
    m_player->start();
}

void MessageLogPanel::sendByHand()
{
    QJsonParseError error {};
    const QByteArray text = m_dataToSend->toPlainText().toUtf8();
    const QJsonDocument payload = QJsonDocument::fromJson(text, &error);
    const QString event = m_eventToSend->currentText().trimmed();
    if (event.isEmpty()) {
        m_errorLabel->showText(tr("The event is missing"));
    } else if (error.error != QJsonParseError::NoError) {
        m_errorLabel->showText(tr("The data are not JSON: error after character %1")
                                   .arg(QString::fromUtf8(text.left(error.offset)).size()));
    } else if (!payload.isObject()) {
        m_errorLabel->showText(tr("The data must be a JSON object"));
    } else {
        m_errorLabel->showText(QString());
        m_plugin.send(event, payload.object());
    }
}

void MessageLogPanel::rememberEvent(int row)
{
    const QString event = m_log.entry(row).event;
    if (m_eventFilter->findText(event) < 0)
        m_eventFilter->addItem(event);
}

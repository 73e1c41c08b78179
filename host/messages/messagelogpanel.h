#pragma once

#include "host/messages/messagelogfilter.h"

#include <QWidget>

#include <memory>

class EventPlayer;
class MessageLogModel;
class NoticeLabel;
class PluginHost;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QTableView;

/// Shows the message log and the data of the current message, and sends events entered by hand.
class MessageLogPanel final : public QWidget
{
    Q_OBJECT
public:
    MessageLogPanel(MessageLogModel &log, PluginHost &plugin, QWidget *parent = nullptr);
    ~MessageLogPanel() override;

    /// Plays a file of JSON lines, with a progress dialog that can stop it.
    void replay(const QString &fileName);

private:
    QWidget *makeFilterRow();
    QWidget *makeSendBox();
    void showCurrent();
    void copyCurrent();
    void chooseAndSave();
    void chooseAndReplay();
    void sendByHand();
    void rememberEvent(int row);

    MessageLogModel &m_log;
    PluginHost &m_plugin;
    MessageLogFilter m_filter;
    QTableView *m_table;
    QPlainTextEdit *m_details;
    QComboBox *m_eventFilter = nullptr;
    QComboBox *m_eventToSend = nullptr;
    QPlainTextEdit *m_dataToSend = nullptr;
    NoticeLabel *m_errorLabel = nullptr;
    std::unique_ptr<EventPlayer> m_player;
};

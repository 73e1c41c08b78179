#pragma once

#include <QSortFilterProxyModel>
#include <QWidget>

#include <memory>

class EventPlayer;
class JournalModel;
class PluginHost;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTableView;

/// Shows the journal by event name and by text found anywhere in the message.
class JournalFilter final : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit JournalFilter(JournalModel &journal, QObject *parent = nullptr);

    /// An empty name or text lets everything through.
    void setEvent(const QString &event);
    void setText(const QString &text);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    const JournalModel &m_journal;
    QString m_event;
    QString m_text;
};

/// The protocol at work: the journal, one message in full, and a desk to send any event by hand.
class JournalPanel final : public QWidget
{
    Q_OBJECT
public:
    JournalPanel(JournalModel &journal, PluginHost &plugin, QWidget *parent = nullptr);
    ~JournalPanel() override;

    /// Plays a file of JSON lines, with progress and a way to stop it.
    void replay(const QString &fileName);

private:
    QWidget *makeFilterRow();
    QWidget *makeSendDesk();
    void showCurrent();
    void copyCurrent();
    void chooseAndSave();
    void chooseAndReplay();
    void sendByHand();
    void rememberEvent(int row);
    void followTail();

    JournalModel &m_journal;
    PluginHost &m_plugin;
    JournalFilter m_filter;
    QTableView *m_table;
    QPlainTextEdit *m_details;
    QComboBox *m_eventFilter = nullptr;
    QComboBox *m_eventToSend = nullptr;
    QPlainTextEdit *m_dataToSend = nullptr;
    QLabel *m_complaint = nullptr;
    std::unique_ptr<EventPlayer> m_player;
};

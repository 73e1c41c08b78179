#pragma once

#include "host/remote/remoteside.h"

#include <QTimer>
#include <QWidget>

class FleetController;
class NoticeLabel;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QStandardItemModel;
class QTableView;

/// Shows the remote side: the due list, the form to complete a service, the records, the log.
class RemotePanel final : public QWidget
{
    Q_OBJECT
public:
    RemotePanel(RemoteSide &remote, FleetController &fleet, QWidget *parent = nullptr);

private:
    QWidget *makePendingBox();
    QWidget *makeRecordsBox();
    QWidget *makeCarRow();
    void refillPending();
    void refillRecords();
    void refillPeople();
    void refillCars();
    void showStoredText();
    void completeCurrent();
    void showCheck();

    RemoteSide &m_remote;
    FleetController &m_fleet;
    QVector<PendingService> m_shownPending;
    PendingService m_chosen; // its comment is being edited
    QTimer m_recordsTimer;
    QStandardItemModel *m_pending;
    QStandardItemModel *m_records;
    QTableView *m_pendingView;
    QTableView *m_recordsView;
    QComboBox *m_person;
    QComboBox *m_channel;
    QComboBox *m_car;
    QLineEdit *m_comment;
    NoticeLabel *m_check;
    QPlainTextEdit *m_log;
};

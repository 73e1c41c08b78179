#pragma once

#include "host/remote/remoteside.h"

#include <QTimer>
#include <QWidget>

class FleetController;
class NoticeLabel;
class PhoneDialog;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QStandardItemModel;
class QTableView;
class WebService;

/// Shows the remote side: the due list, the form to complete a service, the records, the log.
class RemotePanel final : public QWidget
{
    Q_OBJECT
public:
    RemotePanel(RemoteSide &remote, FleetController &fleet, WebService &web, QWidget *parent = nullptr);

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
    void showPhoneDialog();

    RemoteSide &m_remote;
    FleetController &m_fleet;
    WebService &m_web;
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
    PhoneDialog *m_phone = nullptr; // made when it is first shown
};

#pragma once

#include "host/remote/remoteside.h"

#include <QTimer>
#include <QWidget>

class FleetDesk;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QStandardItemModel;
class QTableView;

/// The remote side's window: what waits for service, who did it, the records, the diary.
class RemotePanel final : public QWidget
{
    Q_OBJECT
public:
    RemotePanel(RemoteSide &remote, FleetDesk &desk, QWidget *parent = nullptr);

private:
    QWidget *makePendingBox();
    QWidget *makeRecordsBox();
    QWidget *makeCarRow();
    void refillPending();
    void refillRecords();
    void refillPeople();
    void refillCars();
    void completeCurrent();
    void showCheck();

    RemoteSide &m_remote;
    FleetDesk &m_desk;
    QVector<PendingService> m_shownPending;
    QTimer m_recordsTimer;
    QStandardItemModel *m_pending;
    QStandardItemModel *m_records;
    QTableView *m_pendingView;
    QTableView *m_recordsView;
    QComboBox *m_person;
    QComboBox *m_channel;
    QComboBox *m_car;
    QLineEdit *m_comment;
    QLabel *m_check;
    QPlainTextEdit *m_diary;
};

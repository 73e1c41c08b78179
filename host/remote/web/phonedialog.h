#pragma once

#include <QDialog>
#include <QTimer>

class NoticeLabel;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QrCode;
class WebService;

/// Starts and stops the page for phones; shows its address, also as a QR code, and who has it open. The page
/// is served on when the dialog is closed.
class PhoneDialog final : public QDialog
{
    Q_OBJECT
public:
    explicit PhoneDialog(WebService &web, QWidget *parent = nullptr);

    /// Serves the page at the chosen address unless it is served already.
    void serve();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void toggle();
    void refresh();
    void refreshClients();
    QString hintText() const;

    WebService &m_web;
    QTimer m_clientsTimer;
    QComboBox *m_address;
    QPushButton *m_toggle;
    NoticeLabel *m_error;
    QrCode *m_code;
    QLabel *m_url;
    QLabel *m_hint;
    QListWidget *m_clients;
};

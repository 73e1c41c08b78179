#pragma once

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

/// Answers messages as the garage module does. Stores nothing: an answer to a reload says that nothing is
/// due, and remote records are never reported as stored, so the remote side keeps them.
class GarageRole final : public QObject
{
    Q_OBJECT
public:
    GarageRole(QWidget *window, QWidget *page, QString caption);

    void handle(const QString &event, const QJsonObject &data);
    void insertTab();
    void closeTab();
    /// The answer to a reload follows after the time that a short one takes.
    void reload() { m_reload.start(); }

signals:
    void message(const QString &event, const QJsonObject &data);

private:
    void readCars(const QJsonObject &data);
    void sendSettingsPage();
    void switchAvailability(const QJsonObject &request);
    void reportNothingDue();

    const QPointer<QWidget> m_window;
    const QPointer<QWidget> m_page;
    const QString m_caption;
    QTimer m_reload;
    QMap<int, bool> m_availability; ///< by the id of the car
};

#pragma once

#include "data/records.h"

#include <QDateTime>
#include <QDialog>
#include <QJsonArray>

#include <memory>

namespace Ui {
class ServiceDialog;
}

/// Asks for a service operation done on a car or, in complaint mode, for a complaint about it. The results
/// are set by accept(); nothing is validated.
class ServiceDialog final : public QDialog
{
    Q_OBJECT
public:
    explicit ServiceDialog(QWidget *parent = nullptr);
    ~ServiceDialog() override;

    /// Operations in ascending id order, then "--" for none.
    void setOperations(const ServiceOperations &operations);
    /// "--" for none, then the people in the order of the array.
    void setPersonal(const QJsonArray &personal);
    /// An id that is not in the list selects "--".
    void setOperation(int opId);
    /// Shown in local time, to the minute. The seconds stay unless the user chooses another time.
    void setDateTime(const QDateTime &dateTime);
    void setComment(const QString &text);
    /// A name that is not offered changes nothing.
    void setPersonName(const QString &text);
    void lockOperation();
    /// Appends " - " and the text to the window title.
    void setTitleSuffix(const QString &text);
    /// Replaces the window title: call it before setTitleSuffix(). The comment gets the focus.
    void setComplaintMode();

    int personId() const { return m_personId; } ///< -1: none
    int operationId() const { return m_operationId; } ///< -1: none
    QString operationName() const { return m_operationName; }
    QString comment() const { return m_comment; }
    QString personName() const { return m_personName; }
    QDateTime dateTime() const { return m_dateTime; } ///< local time

public slots:
    void accept() override;

private:
    QDateTime chosenDateTime() const;

    int m_personId = noId;
    int m_operationId = noId;
    QString m_operationName;
    QString m_comment;
    QString m_personName;
    QDateTime m_dateTime;
    QDateTime m_initialDateTime; ///< as the field has it
    const std::unique_ptr<Ui::ServiceDialog> m_ui;
};

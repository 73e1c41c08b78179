#pragma once

#include "data/records.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ReglamentSettingsDialog;
}

/// Asks for the limits of one service operation on one car model. The results are set by accept(); an empty
/// field, or one that is not a number, means no limit (0). Nothing is range-checked or refused.
class ReglamentSettingsDialog final : public QDialog
{
    Q_OBJECT
public:
    explicit ReglamentSettingsDialog(QWidget *parent = nullptr);
    ~ReglamentSettingsDialog() override;

    void setModelName(const QString &text);
    /// A line feed is shown as a blank.
    void setOperationName(const QString &text);
    /// Seconds of driving, shown in hours with one decimal. As with the other limits, 0 leaves the field
    /// empty.
    void setTimeLimit(int seconds);
    void setRunsLimit(int runs);
    void setLapsLimit(int laps);
    /// All three of them.
    void setLimits(const Limits &limits);

    /// As entered; none before accept().
    Limits limits() const { return m_limits; }

public slots:
    void accept() override;

private:
    const std::unique_ptr<Ui::ReglamentSettingsDialog> m_ui;
    Limits m_limits;
};

#pragma once

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

    int timeLimit() const { return m_timeLimit; } ///< seconds of driving
    int runsLimit() const { return m_runsLimit; }
    int lapsLimit() const { return m_lapsLimit; }

public slots:
    void accept() override;

private:
    const std::unique_ptr<Ui::ReglamentSettingsDialog> m_ui;
    int m_timeLimit = 0;
    int m_runsLimit = 0;
    int m_lapsLimit = 0;
};

#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

class QWidget;

/// Milliseconds of computing of the calling thread, which other programs disturb less than elapsed time.
double threadMs();

double median(std::vector<double> values);

/// Times how long people wait, one wait after another.
class Waits final
{
public:
    void begin();
    /// Ends the wait and makes it the time of an iteration.
    void end(benchmark::State &state);
    /// Counters of all waits: "median_ms" by the clock, "computing_ms" and "longest_ms" of computing in the
    /// waiting thread.
    void report(benchmark::State &state) const;

private:
    QElapsedTimer m_sinceBegin;
    double m_computingAtBegin = 0;
    std::vector<double> m_clock;
    std::vector<double> m_computing;
};

/// Counts how often a widget is painted.
class PaintCount final : public QObject
{
public:
    explicit PaintCount(QWidget *widget);

    /// Processes events until the widget was painted again since the action began.
    void wait(const std::function<void()> &action);
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int m_paints = 0;
};

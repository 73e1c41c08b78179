#include "bench/waits.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <ctime>

double threadMs()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void Waits::begin()
{
    m_computingAtBegin = threadMs();
    m_sinceBegin.start();
}

void Waits::end(benchmark::State &state)
{
    const double seconds = double(m_sinceBegin.nsecsElapsed()) / 1e9;
    m_clock.push_back(seconds * 1e3);
    m_computing.push_back(threadMs() - m_computingAtBegin);
    state.SetIterationTime(seconds);
}

void Waits::report(benchmark::State &state) const
{
    state.counters["median_ms"] = median(m_clock);
    state.counters["computing_ms"] = median(m_computing);
    state.counters["longest_ms"] = *std::max_element(m_computing.begin(), m_computing.end());
}

PaintCount::PaintCount(QWidget *widget)
{
    widget->installEventFilter(this);
}

void PaintCount::wait(const std::function<void()> &action)
{
    const int before = m_paints;
    action();
    while (m_paints == before)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

bool PaintCount::eventFilter(QObject *watched, QEvent *event)
{
    m_paints += event->type() == QEvent::Paint ? 1 : 0;
    return QObject::eventFilter(watched, event);
}

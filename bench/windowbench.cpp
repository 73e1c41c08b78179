#include "bench/benchdata.h"
#include "bench/instructioncount.h"
#include "bench/registration.h"
#include "bench/shownwindow.h"
#include "bench/waits.h"
#include "data/garagestatistics.h"

#include <benchmark/benchmark.h>

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr int gapReloads = 20;
constexpr int manyCars = 2000;
constexpr double msPerSecond = 1000;

/// The longest time between two iterations of the event loop.
class Heartbeat final
{
public:
    Heartbeat()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_longest = std::max(m_longest, m_sinceBeat.nsecsElapsed());
            m_longestComputingMs = std::max(m_longestComputingMs, threadMs() - m_lastBeatMs);
            m_lastBeatMs = threadMs();
            m_sinceBeat.start();
        });
        m_sinceBeat.start();
        m_timer.start(0);
    }
    double longestMs() const { return double(m_longest) / 1e6; }
    double longestComputingMs() const { return m_longestComputingMs; }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceBeat;
    qint64 m_longest = 0;
    double m_lastBeatMs = threadMs();
    double m_longestComputingMs = 0;
};

/// Iteration times are the gaps, "median_ms" their median, "computing_ms" that of the computing time in them.
void gapWhileReloading(benchmark::State &state, const BenchShape &shape)
{
    ShownWindow window(shape);
    std::vector<double> gaps;
    std::vector<double> computing;
    for (auto _ : state) {
        const Heartbeat heartbeat;
        window.reload();
        gaps.push_back(heartbeat.longestMs());
        computing.push_back(heartbeat.longestComputingMs());
        state.SetIterationTime(gaps.back() / msPerSecond);
    }
    state.counters["median_ms"] = median(gaps);
    state.counters["computing_ms"] = median(computing);
}

/// The time of Qt's own delegate for the same cells and grid.
class PlainGridDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        painter->setPen(option.palette.color(QPalette::Midlight));
        painter->drawRect(option.rect);
    }
};

void repaint(benchmark::State &state, const BenchShape &shape, bool plain)
{
    const ShownWindow window(shape);
    PlainGridDelegate delegate;
    if (plain)
        window.table()->setItemDelegate(&delegate);
    const InstructionCount count;
    for (auto _ : state)
        window.table()->viewport()->repaint();
}

void scrollPage(benchmark::State &state)
{
    const ShownWindow window(wideTableShape);
    QTreeView *table = window.table();
    QScrollBar *bar = table->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue(bar->value() == bar->maximum() ? 0 : bar->value() + bar->pageStep());
        table->viewport()->repaint();
    }
}

/// The maintenance table with 2,000 cars of the wide shape's columns and limits.
class ManyCars final
{
public:
    explicit ManyCars(const BenchShape &shape) : m_home(shape)
    {
        m_home.enter();
        m_settings = std::make_unique<GarageSettingsForm>();
        GarageDatabase database(QStringLiteral("bench"));
        QList<MaintainanceItem> cars = GarageStatistics::readCars(database);
        GarageStatistics::readDrivingSinceService(database, cars);
        const int different = int(cars.size());
        for (int row = different; row < manyCars; ++row) {
            cars.append(cars.at(row % different));
            cars.last().carId = row + 1;
            cars.last().num = QString::number(row + 1);
        }
        m_proxy.setMaintainanceModel(&m_model);
        m_proxy.setReglament(&m_settings->reglamentModel());
        m_view.setModel(&m_proxy);
        const ClearbackgroundTableModel::LayoutChange change(m_model);
        m_model.updateColumns(&m_settings->reglamentModel(), &m_view);
        m_model.setItems(cars);
    }

    MaintainanceModel &model() { return m_model; }
    MaintainanceFilterProxy &proxy() { return m_proxy; }
    QString modelName() const { return m_model.itemAt(0).model; }

private:
    const BenchHome m_home;
    std::unique_ptr<GarageSettingsForm> m_settings;
    MaintainanceModel m_model;
    MaintainanceFilterProxy m_proxy;
    QTreeView m_view;
};

/// `mode` is a MaintainanceModel::SortMode or one more: by model and number.
void sortCars(benchmark::State &state, const BenchShape &shape, int mode)
{
    ManyCars cars(shape);
    cars.proxy().sort(0); // the first request is always answered by number
    cars.model().setSortMode(mode);
    const int column = cars.model().columnCount() - 1;
    bool ascending = false;
    const InstructionCount count;
    for (auto _ : state) {
        ascending = !ascending;
        cars.proxy().sort(column, ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
    }
}

void filterCarsByModel(benchmark::State &state, const BenchShape &shape)
{
    ManyCars cars(shape);
    int on = 0;
    const InstructionCount count;
    for (auto _ : state) {
        on = 1 - on;
        cars.proxy().setModelFilter(cars.modelName(), on);
    }
}

void filterCarsByNeed(benchmark::State &state, const BenchShape &shape)
{
    ManyCars cars(shape);
    int on = 0;
    const InstructionCount count;
    for (auto _ : state) {
        on = 1 - on;
        cars.proxy().setNeedsServiceOnly(on);
    }
}

using LogFilterChange = void (*)(ServiceLogFilter &, bool);

/// `change` sets one filter to one of two values in turn.
void filterLog(benchmark::State &state, const BenchShape &shape, LogFilterChange change)
{
    const BenchHome home(shape);
    home.enter();
    ServiceLogModel model;
    ServiceLogFilter filter;
    filter.setSourceModel(&model);
    QTreeView view;
    view.setModel(&filter);
    {
        const GarageDatabase database(QStringLiteral("bench"));
        const ClearbackgroundTableModel::LayoutChange layoutChange(model);
        model.append(GarageStatistics::readServiceLog(database));
    }
    bool on = false;
    const InstructionCount count;
    for (auto _ : state) {
        on = !on;
        change(filter, on);
    }
}

constexpr std::pair<const char *, LogFilterChange> logFilterChanges[] = {
    {"model",
     [](ServiceLogFilter &filter, bool on) {
         filter.setModelFilter(on ? QStringLiteral("Модель 1") : QString());
     }},
    {"number",
     [](ServiceLogFilter &filter, bool on) { filter.setNumberFilter(on ? QStringLiteral("1") : QString()); }},
    {"operation",
     [](ServiceLogFilter &filter, bool on) {
         filter.setOperationFilter(on ? 1 : ServiceLogFilter::anyOperation);
     }},
    {"pending",
     [](ServiceLogFilter &filter, bool on) {
         filter.setOperationFilter(on ? ServiceLogFilter::pendingOnly : ServiceLogFilter::anyOperation);
     }},
};

} // namespace

void registerWindowBenchmarks()
{
    using namespace benchmark;
    for (const auto &[name, shape] : {std::pair("gap/journal", journalShape), {"gap/wide", wideTableShape}})
        RegisterBenchmark(name, gapWhileReloading, shape)
            ->Unit(kMillisecond)
            ->UseManualTime()
            ->Iterations(gapReloads);

    for (const auto &[variant, plain] : {std::pair("/plain", true), {"/garage", false}}) {
        RegisterBenchmark((std::string("paint/wide") + variant).c_str(), repaint, wideTableShape, plain)
            ->Unit(kMillisecond)
            ->MeasureProcessCPUTime();
        RegisterBenchmark((std::string("count/paint") + variant).c_str(), repaint, smallShape, plain)
            ->Iterations(countedIterations);
    }
    RegisterBenchmark("scroll/wide", scrollPage)->Unit(kMillisecond)->MeasureProcessCPUTime();

    const char *const sortNames[] = {"last-done", "time", "runs", "laps", "model-and-number"};
    for (int mode = 0; mode < 5; ++mode) {
        const std::string sort = std::string("sort/") + sortNames[mode];
        RegisterBenchmark(sort.c_str(), sortCars, wideTableShape, mode)->Unit(kMillisecond);
        RegisterBenchmark(("count/" + sort).c_str(), sortCars, smallShape, mode)
            ->Iterations(countedIterations);
    }
    for (const auto &[name, run] : {std::pair(std::string("filter/model"), filterCarsByModel),
                                    {"filter/needs-service", filterCarsByNeed}}) {
        RegisterBenchmark(name.c_str(), run, wideTableShape)->Unit(kMillisecond);
        RegisterBenchmark(("count/" + name).c_str(), run, smallShape)->Iterations(countedIterations);
    }
    for (const auto &[name, change] : logFilterChanges) {
        RegisterBenchmark((std::string("log-filter/") + name).c_str(), filterLog, journalShape, change)
            ->Unit(kMillisecond);
        RegisterBenchmark((std::string("count/log-filter/") + name).c_str(), filterLog, smallShape, change)
            ->Iterations(countedIterations);
    }
}

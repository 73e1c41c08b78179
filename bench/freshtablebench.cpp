// What a user waits for after a run and after a service: the library in a host's window, on the file of a
// season.

#include "bench/benchdata.h"
#include "bench/plainsqlite.h"
#include "bench/registration.h"
#include "bench/waits.h"
#include "data/garagestatistics.h"
#include "trivexplugininterface.h"

#include <benchmark/benchmark.h>

#include <QAbstractProxyModel>
#include <QApplication>
#include <QDateTimeEdit>
#include <QDialog>
#include <QJsonObject>
#include <QMainWindow>
#include <QPluginLoader>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

#include <functional>
#include <vector>

namespace {

constexpr int reloads = 9;
constexpr int services = 5;
constexpr QRgb green = qRgb(190, 247, 190);
constexpr QRgb red = qRgb(255, 127, 127);

/// The computing time of the loader's thread at its progress lines, which it writes between two steps.
struct LoaderSteps
{
    double readMs = 0; ///< when all records are read
    double doneMs = 0; ///< when the message is made
    QElapsedTimer sinceDone;
};

LoaderSteps loaderSteps;

/// Called in the loader's thread, which waits for nobody meanwhile.
void noteProgress(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg)
        return;
    if (text.startsWith(QLatin1String("step 3"))) {
        loaderSteps.readMs = threadMs();
    } else if (text.startsWith(QLatin1String("step 4"))) {
        loaderSteps.doneMs = threadMs();
        loaderSteps.sinceDone.start();
    }
}

class LoadedWindow final : public QObject
{
public:
    explicit LoadedWindow(const BenchShape &shape) : m_home(shape)
    {
        m_home.enter();
        m_formerHandler = qInstallMessageHandler(noteProgress);
        m_plugin = qobject_cast<TrivexPluginInterface *>(m_loader.instance());
        if (!m_plugin)
            qFatal("%s", qPrintable(m_loader.errorString()));
        auto *tabs = new QTabWidget;
        m_window.setCentralWidget(tabs);
        m_window.resize(1920, 1080);
        connect(m_plugin, &TrivexPluginInterface::pluginSignal, this,
                [this, tabs](const QString &, const QString &event, const QJsonObject &message) {
                    if (event != QLatin1String("insert_tab"))
                        return;
                    const qlonglong address =
                        message.value(QLatin1String("tabWidget")).toVariant().toLongLong();
                    m_tab = reinterpret_cast<QWidget *>(address);
                    tabs->addTab(m_tab, QString());
                });
        send("load_complete");
        send("clicked", {{QStringLiteral("key"), QStringLiteral("show_garage")}});
        m_table = m_tab->findChild<QTreeView *>(QStringLiteral("tvMaintainanceTable"));
        connect(m_table->model(), &QAbstractItemModel::layoutAboutToBeChanged, this, [this] {
            m_deliveryMs = double(loaderSteps.sinceDone.nsecsElapsed()) / 1e6;
            m_computingAtModels = threadMs();
        });
        const auto *log = m_tab->findChild<QTreeView *>(QStringLiteral("tvServiceLog"));
        connect(log->model(), &QAbstractItemModel::layoutChanged, this, [this] {
            m_computingAtPaint = threadMs();
            m_isPainted = false;
            ++m_reloads;
        });
        m_table->viewport()->installEventFilter(this);
        m_window.show();
        awaitReload(1);
    }
    ~LoadedWindow() override
    {
        m_tab->setParent(nullptr);
        m_loader.unload();
        qInstallMessageHandler(m_formerHandler);
    }

    void send(const char *event, const QJsonObject &data = {})
    {
        m_plugin->pluginSlot(QStringLiteral("bench"), QLatin1String(event), data);
    }

    int reloadCount() const { return m_reloads; }
    /// Until the table was painted after that many reloads.
    void awaitReload(int count)
    {
        while (m_reloads < count || !m_isPainted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        m_paintMs = threadMs() - m_computingAtPaint;
    }

    QTreeView *table() const { return m_table; }
    double deliveryMs() const { return m_deliveryMs; }
    double modelsMs() const { return m_computingAtPaint - m_computingAtModels; }
    double paintMs() const { return m_paintMs; }
    BenchHome &home() { return m_home; }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_isPainted = true;
        return QObject::eventFilter(watched, event);
    }

private:
    BenchHome m_home;
    QtMessageHandler m_formerHandler = nullptr;
    QMainWindow m_window;
    QPluginLoader m_loader {QStringLiteral(GARAGE_PLUGIN)};
    TrivexPluginInterface *m_plugin = nullptr;
    QWidget *m_tab = nullptr;
    QTreeView *m_table = nullptr;
    int m_reloads = 0;
    bool m_isPainted = false;
    double m_deliveryMs = 0;
    double m_computingAtModels = 0;
    double m_computingAtPaint = 0;
    double m_paintMs = 0;
};

double computingMs(const std::function<void()> &job)
{
    const double before = threadMs();
    job();
    return threadMs() - before;
}

/// The time of the reader without SQLite's own, which is the plain variant's. Measured without laps, because
/// the rows are the same and SQLite counts the laps of a season for a second, which varies by more than this
/// time.
double recordsMs(const BenchShape &shape)
{
    const BenchHome home(BenchShape {"laps-none", shape.cars, shape.operations, shape.records, 0});
    home.enter();
    PlainSqlite plain(home.databasePath());
    const GarageDatabase database(QStringLiteral("bench-records"));
    std::vector<double> differences;
    for (int time = 0; time < reloads; ++time) {
        const double reading = computingMs([&] {
            QList<MaintainanceItem> cars = GarageStatistics::readCars(database);
            GarageStatistics::readDrivingSinceService(database, cars);
            benchmark::DoNotOptimize(GarageStatistics::readServiceLog(database));
            benchmark::DoNotOptimize(GarageStatistics::readReglament(database));
        });
        const double stepping = computingMs([&] {
            for (const std::string &statement : reloadStatements())
                benchmark::DoNotOptimize(plain.readAll(statement.c_str()));
        });
        differences.push_back(reading - stepping);
    }
    return median(differences);
}

/// From the host's message about a saved run to the repainted table. All counters but "query_ms" together are
/// "other_ms"; "delivery_ms" is a time by the clock, the others are of computing.
void freshTable(benchmark::State &state, const BenchShape &shape)
{
    const double records = recordsMs(shape);
    LoadedWindow window(shape);
    Waits waits;
    std::vector<double> message;
    std::vector<double> delivery;
    std::vector<double> models;
    std::vector<double> paint;
    for (auto _ : state) {
        waits.begin();
        window.send("run_saved_to_db");
        window.awaitReload(window.reloadCount() + 1);
        waits.end(state);
        message.push_back(loaderSteps.doneMs - loaderSteps.readMs);
        delivery.push_back(window.deliveryMs());
        models.push_back(window.modelsMs());
        paint.push_back(window.paintMs());
    }
    waits.report(state);
    const double other = records + median(message) + median(delivery) + median(models) + median(paint);
    state.counters["records_ms"] = records;
    state.counters["message_ms"] = median(message);
    state.counters["delivery_ms"] = median(delivery);
    state.counters["models_ms"] = median(models);
    state.counters["paint_ms"] = median(paint);
    state.counters["other_ms"] = other;
    state.counters["query_ms"] = state.counters["median_ms"] - other;
}

QRgb bandOf(const QTreeView &table, const QRect &cell)
{
    const QImage picture = table.viewport()->grab(cell).toImage();
    return picture.pixel(cell.width() - 3, cell.height() - 3);
}

/// A cell in view that is red.
QModelIndex redCell(const QTreeView &table)
{
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        for (int column = 3; column < table.model()->columnCount(); ++column) {
            const QModelIndex cell = table.model()->index(row, column);
            const QRect place = table.visualRect(cell);
            if (table.viewport()->rect().contains(place) && bandOf(table, place) == red)
                return cell;
        }
    }
    qFatal("No cell is red");
}

/// Accepts the dialog of a service, after the last lap of the season. The clock starts with its acceptance.
void acceptService(LoadedWindow &window, const QModelIndex &cell, Waits &waits)
{
    QTimer::singleShot(0, &window, [&waits] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            qFatal("No dialog");
        dialog->findChild<QDateTimeEdit *>()->setDateTime(QDateTime(QDate(2027, 1, 1), QTime(12, 0)));
        waits.begin();
        dialog->accept();
    });
    QMetaObject::invokeMethod(window.table(), "serviceButtonClicked", Q_ARG(QModelIndex, cell));
}

/// From the acceptance of a service to its green cell, which the reload after it shows.
void serviceToGreen(benchmark::State &state, const BenchShape &shape)
{
    LoadedWindow window(shape);
    const QByteArray forget = "DELETE FROM maintainance WHERE id>" + QByteArray::number(shape.records);
    Waits waits;
    for (auto _ : state) {
        const QPersistentModelIndex cell = redCell(*window.table());
        const int before = window.reloadCount();
        acceptService(window, cell, waits);
        window.awaitReload(before + 1);
        waits.end(state);
        if (bandOf(*window.table(), window.table()->visualRect(cell)) != green)
            qFatal("The cell is not green");
    }
    waits.report(state);
    PlainSqlite(window.home().databasePath()).exec(forget.constData());
}

} // namespace

void registerFreshTableBenchmarks()
{
    benchmark::RegisterBenchmark("fresh-table/laps", freshTable, lapsShape)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(reloads);
    benchmark::RegisterBenchmark("service-to-green/laps", serviceToGreen, lapsShape)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(services);
}

// What a user waits for in the service log: from a key in its filters, or a step of the wheel, to the painted
// records.

#include "bench/benchdata.h"
#include "bench/registration.h"
#include "bench/shownwindow.h"
#include "bench/waits.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTreeView>
#include <QWheelEvent>

namespace {

constexpr int steps = 100;

void pressKey(QWidget *widget, Qt::Key key, const QString &text = {})
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(widget, &event);
    }
}

/// Types and deletes a number of two digits.
void typeNumber(benchmark::State &state, const BenchShape &shape)
{
    ShownWindow window(shape);
    PaintCount paints(window.openLog()->viewport());
    auto *number = window.form().findChild<QLineEdit *>(QStringLiteral("leLogFilterNum"));
    Waits waits;
    int place = 0;
    for (auto _ : state) {
        waits.begin();
        paints.wait([&] {
            if (place >= 2)
                pressKey(number, Qt::Key_Backspace);
            else
                pressKey(number, place == 0 ? Qt::Key_1 : Qt::Key_2, QString::number(1 + place));
        });
        waits.end(state);
        place = (place + 1) % 4;
    }
    waits.report(state);
}

/// Chooses one entry after another with the arrow keys, and back.
void chooseEntry(benchmark::State &state, const BenchShape &shape, const char *comboName)
{
    ShownWindow window(shape);
    PaintCount paints(window.openLog()->viewport());
    auto *combo = window.form().findChild<QComboBox *>(QLatin1String(comboName));
    Waits waits;
    Qt::Key key = Qt::Key_Down;
    for (auto _ : state) {
        if (combo->currentIndex() == 0)
            key = Qt::Key_Down;
        else if (combo->currentIndex() == combo->count() - 1)
            key = Qt::Key_Up;
        waits.begin();
        paints.wait([&] { pressKey(combo, key); });
        waits.end(state);
    }
    waits.report(state);
}

/// Turns the wheel down and up again, one notch at a time.
void turnWheel(benchmark::State &state, const BenchShape &shape)
{
    constexpr int notch = 120;
    constexpr int notchesDown = 25;
    ShownWindow window(shape);
    QTreeView *log = window.openLog();
    PaintCount paints(log->viewport());
    const QPoint at = log->viewport()->rect().center();
    Waits waits;
    int turned = 0;
    for (auto _ : state) {
        const int direction = turned++ / notchesDown % 2 == 0 ? -1 : 1;
        QWheelEvent event(at, log->viewport()->mapToGlobal(at), {}, {0, direction * notch}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        waits.begin();
        paints.wait([&] { QCoreApplication::sendEvent(log->viewport(), &event); });
        waits.end(state);
    }
    waits.report(state);
}

/// Opens the log, whose rows have not been laid out yet.
void openLog(benchmark::State &state, const BenchShape &shape)
{
    Waits waits;
    for (auto _ : state) {
        ShownWindow window(shape);
        auto *log = window.form().findChild<QTreeView *>(QStringLiteral("tvServiceLog"));
        PaintCount paints(log->viewport());
        waits.begin();
        paints.wait([&] { window.openLog(); });
        waits.end(state);
    }
    waits.report(state);
}

template<typename... Arguments>
void registerWaits(const std::string &name, int iterations, Arguments... arguments)
{
    benchmark::RegisterBenchmark(name.c_str(), arguments...)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(iterations);
}

} // namespace

void registerLogBenchmarks()
{
    for (const auto &[variant, shape] : {std::pair(std::string(), notesShape), {"-1MB", hugeNoteShape}}) {
        registerWaits("log-key/number" + variant, steps, typeNumber, shape);
        registerWaits("log-key/model" + variant, steps, chooseEntry, shape, "cbLogFilterModels");
        registerWaits("log-key/operation" + variant, steps, chooseEntry, shape, "cbLogFilterOperation");
        registerWaits("log-wheel/" + (variant.empty() ? std::string("notes") : std::string("1MB")), steps,
                      turnWheel, shape);
    }
    registerWaits("log-open/notes", 5, openLog, notesShape);
}

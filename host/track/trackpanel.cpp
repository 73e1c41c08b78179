#include "host/track/trackpanel.h"

#include "host/fleet/fleetcontroller.h"
#include "host/track/track.h"
#include "host/widgets/noticelabel.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>

#include <cmath>

namespace {

// The slider counts in hundredths of a power of ten: 0 is 1×, 300 is 1,000×.
constexpr int sliderEnd = 300;

int speedAt(int position)
{
    return int(std::lround(std::pow(10.0, position / 100.0)));
}

int positionOf(int speed)
{
    return int(std::lround(std::log10(double(speed)) * 100));
}

QSpinBox *makeSpinBox(const char *name, int least, int most, int value)
{
    auto *box = new QSpinBox;
    box->setObjectName(QLatin1String(name));
    box->setRange(least, most);
    box->setValue(value);
    return box;
}

} // namespace

TrackPanel::TrackPanel(Track &track, FleetController &fleet, QWidget *parent)
    : QWidget(parent)
    , m_track(track)
    , m_fleet(fleet)
    , m_cars(new QListWidget)
    , m_laps(makeSpinBox("lapsSpinBox", 1, 500, 12))
    , m_lapSeconds(makeSpinBox("lapSecondsSpinBox", 10, 600, 42))
    , m_live(new QPushButton)
    , m_slider(new QSlider(Qt::Horizontal))
    , m_speed(new QLabel)
    , m_state(new QLabel)
    , m_onTrack(new QLabel)
    , m_errorLabel(new NoticeLabel("trackErrorLabel"))
{
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(makeManualRunBox(), 1);
    layout->addWidget(makeLiveBox(), 1);

    connect(&m_fleet, &FleetController::carsAnnounced, this, &TrackPanel::refillCars);
    connect(&m_track, &Track::changed, this, &TrackPanel::showState);
    connect(&m_track, &Track::failed, m_errorLabel, [this](const QString &reason) {
        m_errorLabel->showText(tr("Laps wait to be saved: %1").arg(reason));
    });
    connect(&m_track, &Track::lapsSaved, m_errorLabel, [this] { m_errorLabel->showText(QString()); });
    refillCars();
    showState();
}

QWidget *TrackPanel::makeManualRunBox()
{
    auto *box = new QGroupBox(tr("Manual run"));
    auto *layout = new QFormLayout(box);
    m_cars->setObjectName(QStringLiteral("runCarsListWidget"));
    m_cars->setAlternatingRowColors(true);
    auto *record = new QPushButton(tr("Record run"));
    record->setObjectName(QStringLiteral("recordRunPushButton"));
    layout->addRow(new QLabel(tr("Karts of the run")));
    layout->addRow(m_cars);
    layout->addRow(tr("Laps"), m_laps);
    layout->addRow(tr("Lap time, s"), m_lapSeconds);
    layout->addRow(record);
    connect(record, &QPushButton::clicked, this, &TrackPanel::recordRun);
    return box;
}

QWidget *TrackPanel::makeLiveBox()
{
    auto *box = new QGroupBox(tr("Live simulation"));
    auto *layout = new QFormLayout(box);
    layout->setLabelAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_live->setObjectName(QStringLiteral("livePushButton"));
    m_live->setCheckable(true);
    m_slider->setObjectName(QStringLiteral("speedSlider"));
    m_slider->setRange(0, sliderEnd);
    m_slider->setPageStep(100);
    m_slider->setTickInterval(100);
    m_slider->setTickPosition(QSlider::TicksBelow);
    m_slider->setValue(positionOf(m_track.speed()));
    m_speed->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("1000×")));
    m_onTrack->setWordWrap(true);
    m_onTrack->setObjectName(QStringLiteral("onTrackLabel"));
    auto *speedRow = new QHBoxLayout;
    speedRow->addWidget(m_slider, 1);
    speedRow->addWidget(m_speed);
    layout->addRow(m_live);
    layout->addRow(tr("Speed"), speedRow);
    layout->addRow(tr("Saved"), m_state);
    layout->addRow(tr("On the track"), m_onTrack);
    layout->addRow(m_errorLabel);

    connect(m_live, &QPushButton::toggled, this, [this](bool live) { m_track.setLive(live); });
    connect(m_slider, &QSlider::valueChanged, this, [this](int position) {
        m_track.setSpeed(speedAt(position));
        showState();
    });
    return box;
}

void TrackPanel::refillCars()
{
    QSet<int> chosen;
    for (int row = 0; row < m_cars->count(); ++row) {
        if (m_cars->item(row)->checkState() == Qt::Checked)
            chosen.insert(m_cars->item(row)->data(Qt::UserRole).toInt());
    }
    m_cars->clear();
    for (const HostCar &car : m_fleet.cars().list()) {
        if (!car.available)
            continue;
        auto *item = new QListWidgetItem(tr("%1 - %2").arg(car.number, car.model), m_cars);
        item->setData(Qt::UserRole, car.id);
        item->setCheckState(chosen.contains(car.id) ? Qt::Checked : Qt::Unchecked);
    }
}

void TrackPanel::recordRun()
{
    QVector<int> cars;
    for (int row = 0; row < m_cars->count(); ++row) {
        if (m_cars->item(row)->checkState() == Qt::Checked)
            cars.append(m_cars->item(row)->data(Qt::UserRole).toInt());
    }
    if (!cars.isEmpty())
        m_track.recordRun(cars, m_laps->value(), m_lapSeconds->value() * 1000);
}

void TrackPanel::showState()
{
    m_live->setChecked(m_track.isLive());
    m_live->setText(m_track.isLive() ? tr("Stop") : tr("Start simulation"));
    m_speed->setText(tr("%1×").arg(m_track.speed()));
    m_state->setText(tr("runs %1, laps %2").arg(m_track.savedRuns()).arg(m_track.savedLaps()));
    QStringList karts;
    QHash<int, QString> numbers;
    for (const HostCar &car : m_fleet.cars().list())
        numbers.insert(car.id, car.number);
    for (const RaceSimulation::OnTrack &kart : m_track.simulation().onTrack())
        karts.append(
            tr("no. %1: %2").arg(numbers.value(kart.carId, tr("removed")), QString::number(kart.laps)));
    m_onTrack->setText(!karts.isEmpty() ? tr("run %1, number: laps\n%2")
                                              .arg(m_track.simulation().runNumber())
                                              .arg(karts.join(QLatin1String(",  ")))
                                        : tr("none"));
}

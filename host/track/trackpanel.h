#pragma once

#include <QWidget>

class FleetDesk;
class QLabel;
class QListWidget;
class QPushButton;
class QSlider;
class QSpinBox;
class Track;

/// The track's controls: a run by hand, and karts that drive by themselves.
class TrackPanel final : public QWidget
{
    Q_OBJECT
public:
    TrackPanel(Track &track, FleetDesk &desk, QWidget *parent = nullptr);

private:
    QWidget *makeHandDesk();
    QWidget *makeLiveDesk();
    void refillCars();
    void recordRun();
    void showState();

    Track &m_track;
    FleetDesk &m_desk;
    QListWidget *m_cars;
    QSpinBox *m_laps;
    QSpinBox *m_lapSeconds;
    QPushButton *m_live;
    QSlider *m_slider;
    QLabel *m_speed;
    QLabel *m_state;
    QLabel *m_onTrack;
    QLabel *m_complaint;
};

#pragma once

#include <QWidget>

class FleetController;
class NoticeLabel;
class QLabel;
class QListWidget;
class QPushButton;
class QSlider;
class QSpinBox;
class Track;

/// Controls of the track: a form for a manual run, start and speed of the live simulation.
class TrackPanel final : public QWidget
{
    Q_OBJECT
public:
    TrackPanel(Track &track, FleetController &fleet, QWidget *parent = nullptr);

private:
    QWidget *makeManualRunBox();
    QWidget *makeLiveBox();
    void refillCars();
    void recordRun();
    void showState();

    Track &m_track;
    FleetController &m_fleet;
    QListWidget *m_cars;
    QSpinBox *m_laps;
    QSpinBox *m_lapSeconds;
    QPushButton *m_live;
    QSlider *m_slider;
    QLabel *m_speed;
    QLabel *m_state;
    QLabel *m_onTrack;
    NoticeLabel *m_errorLabel;
};

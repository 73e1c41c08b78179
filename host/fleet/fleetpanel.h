#pragma once

#include <QWidget>

class FleetDesk;
class QLabel;
class QStandardItem;
class QStandardItemModel;
class QTableView;

/// The host's cars and people, edited in place; each change is stored and announced at once.
class FleetPanel final : public QWidget
{
    Q_OBJECT
public:
    explicit FleetPanel(FleetDesk &desk, QWidget *parent = nullptr);

private:
    QWidget *makeTable(const QString &title, QTableView *view, void (FleetPanel::*add)(),
                       void (FleetPanel::*remove)());
    void refillCars();
    void refillPeople();
    void storeCar(QStandardItem *changed);
    void storePerson(QStandardItem *changed);
    void addCar();
    void removeCar();
    void addPerson();
    void removePerson();
    /// Tells whether a change went into the file.
    bool report(bool isStored);

    FleetDesk &m_desk;
    QStandardItemModel *m_cars;
    QStandardItemModel *m_people;
    QTableView *m_carsView;
    QTableView *m_peopleView;
    QLabel *m_complaint;
    bool m_refilling = false;
};

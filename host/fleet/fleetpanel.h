#pragma once

#include <QWidget>

class FleetController;
class QStandardItem;
class QStandardItemModel;
class QTableView;

/// Tables of the host's cars and people, edited in place. Each change is stored and announced at once; a
/// removal is confirmed before.
class FleetPanel final : public QWidget
{
    Q_OBJECT
public:
    explicit FleetPanel(FleetController &fleet, QWidget *parent = nullptr);

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
    bool confirmRemoval(const QString &question);

    FleetController &m_fleet;
    QStandardItemModel *m_cars;
    QStandardItemModel *m_people;
    QTableView *m_carsView;
    QTableView *m_peopleView;
    bool m_refilling = false;
};

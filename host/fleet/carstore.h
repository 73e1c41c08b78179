#pragma once

#include "host/result.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QVector>

class HostConnection;

struct HostCar
{
    int id = -1;
    QString number;
    QString model;
    QString guid;
    bool available = true;
};

/// Reads and writes the host's cars. Keeps the cars of the last successful refresh().
class CarStore final
{
    Q_DECLARE_TR_FUNCTIONS(CarStore)
public:
    explicit CarStore(HostConnection &connection);

    const QVector<HostCar> &list() const { return m_cars; }
    /// Reads the cars. The functions below write only: call it after them.
    void refresh();

    /// Data of "cars_list_changed".
    QJsonObject message() const;

    /// Applies the data of "update_cars". An unknown command is an error.
    Result applyUpdate(const QJsonObject &updateCars);
    Result setAvailable(const QVector<int> &carIds, bool available);
    /// Adds an available car of that model with the next free number.
    Result add(const QString &model);
    /// Changes number, model and availability. An empty number or model, or the number of another car, is an
    /// error.
    Result store(const HostCar &car);
    Result remove(int id);

private:
    bool insert(const QString &model);
    bool change(const HostCar &car);

    HostConnection &m_connection;
    QVector<HostCar> m_cars;
};

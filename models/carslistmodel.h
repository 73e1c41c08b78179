#pragma once

#include "models/clearbackgroundtablemodel.h"

#include <QColor>
#include <QList>

class QJsonArray;
class QJsonObject;

/// A list of cars as the host publishes it. Sorts itself; all instances share what they were last sorted by.
class CarsListModel final : public ClearbackgroundTableModel
{
    Q_OBJECT
public:
    struct Car
    {
        int id = -1; ///< -1: the host named none
        QString name; ///< of the car's model
        QString number;
        int numericNumber = 0; ///< the integer that `number` begins with, 0 if there is none
        QString guid;
        bool availableForRuns = true;
    };

    explicit CarsListModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Column -1 repeats the last request made to any instance. The number column is sorted by car id.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// Replaces the cars by those of the host's "cars" array, sorted by model, ascending.
    void loadFromJson(const QJsonObject &object, bool onlyAvailable);
    /// Ids of the cars at the rows of the indexes, one for each index whose row exists.
    QJsonArray idsOfRows(const QModelIndexList &indexes) const;
    bool contains(int carId) const;

    /// The order of rows: a strict weak order for every column.
    static bool comesBefore(const Car &left, const Car &right, int column, Qt::SortOrder order);

protected:
    QString recordId(int row) const override;

private:
    static int s_lastSortColumn;
    static Qt::SortOrder s_lastSortOrder;

    QList<Car> m_cars;
    const QColor m_unavailableColor;
};

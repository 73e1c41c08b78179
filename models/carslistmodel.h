#pragma once

#include "models/clearbackgroundtablemodel.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

/// A list of cars as the host publishes it. All lists of the process share the column and direction they
/// are sorted by.
class CarsListModel final : public ClearbackgroundTableModel
{
    Q_OBJECT
public:
    explicit CarsListModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// Column -1 sorts as was last asked for, in whichever list.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    /// Replaces the cars by those of the host's cars message, or by its available ones, sorted by model.
    void loadFromJson(const QJsonObject &object, bool onlyAvailable);
    /// The car ids of the indexes' rows, in their order; rows out of range are left out.
    QJsonArray idsOfRows(const QModelIndexList &indexes) const;
    bool contains(int carId) const;

protected:
    QString recordId(int row) const override;

private:
    struct Car
    {
        int id = -1;
        QString name;
        QString number;
        QString guid;
        bool isAvailable = true;
        int numberValue = 0; ///< the integer that `number` begins with; 0 if there is none

        static Car fromJson(const QJsonObject &json);
    };

    static bool isBefore(const Car &a, const Car &b, int column, Qt::SortOrder order);

    QVector<Car> m_cars;

    static int s_sortColumn;
    static Qt::SortOrder s_sortOrder;
};

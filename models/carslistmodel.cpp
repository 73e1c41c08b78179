#include "models/carslistmodel.h"

#include "data/columnkeys.h"
#include "data/numbertext.h"
#include "data/records.h"
#include "models/cellcolors.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

enum SortColumn { PositionColumn = 0, ModelColumn = 1 };

CarsListModel::Car carFromJson(const QJsonObject &object)
{
    CarsListModel::Car car;
    car.id = object.value(QLatin1String("id")).toInt(noId);
    car.name = object.value(QLatin1String("name")).toString();
    car.number = object.value(QLatin1String("num")).toString();
    car.numericNumber = leadingInteger(car.number).value_or(0);
    car.guid = object.value(QLatin1String("car_guid")).toString();
    car.availableForRuns = object.value(QLatin1String("available_for_runs")).toBool(true);
    return car;
}

} // namespace

int CarsListModel::s_lastSortColumn = ModelColumn;
Qt::SortOrder CarsListModel::s_lastSortOrder = Qt::AscendingOrder;

CarsListModel::CarsListModel(QObject *parent)
    : ClearbackgroundTableModel(parent), m_unavailableColor(CellColors::unavailable)
{
    appendColumn({tr("#"), Qt::AlignRight, 40, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Модель"), Qt::AlignLeft, 80, ColumnKeys::model, Qt::AlignCenter});
    appendColumn({tr("Номер"), Qt::AlignRight, 80, ColumnKeys::number, Qt::AlignCenter});
}

int CarsListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_cars.size());
}

QVariant CarsListModel::data(const QModelIndex &index, int role) const
{
    if (!isCell(index))
        return ClearbackgroundTableModel::data(index, role);

    const Car &car = m_cars.at(index.row());
    if (role == Qt::BackgroundRole && !car.availableForRuns)
        return m_unavailableColor;
    if (role == Qt::DisplayRole) {
        const QString key = columnKey(index.column());
        if (key == ColumnKeys::position)
            return index.row() + 1;
        if (key == ColumnKeys::model)
            return car.name;
        if (key == ColumnKeys::number)
            return car.number;
    }
    return ClearbackgroundTableModel::data(index, role);
}

void CarsListModel::sort(int column, Qt::SortOrder order)
{
    if (column != -1) {
        s_lastSortColumn = column;
        s_lastSortOrder = order;
    }
    const LayoutChange change(*this);
    std::sort(m_cars.begin(), m_cars.end(), [](const Car &left, const Car &right) {
        return comesBefore(left, right, s_lastSortColumn, s_lastSortOrder);
    });
}

void CarsListModel::loadFromJson(const QJsonObject &object, bool onlyAvailable)
{
    const LayoutChange change(*this);
    m_cars.clear();
    const QJsonArray cars = object.value(QLatin1String("cars")).toArray();
    for (const QJsonValue &value : cars) {
        const Car car = carFromJson(value.toObject());
        if (car.availableForRuns || !onlyAvailable)
            m_cars.append(car);
    }
    sort(ModelColumn, Qt::AscendingOrder);
}

QJsonArray CarsListModel::idsOfRows(const QModelIndexList &indexes) const
{
    QJsonArray ids;
    for (const QModelIndex &index : indexes) {
        if (index.row() >= 0 && index.row() < m_cars.size())
            ids.append(m_cars.at(index.row()).id);
    }
    return ids;
}

bool CarsListModel::contains(int carId) const
{
    return std::any_of(m_cars.cbegin(), m_cars.cend(), [carId](const Car &car) { return car.id == carId; });
}

bool CarsListModel::comesBefore(const Car &left, const Car &right, int column, Qt::SortOrder order)
{
    // Within a model the smaller number comes first in both directions.
    if (column == ModelColumn && left.name == right.name)
        return left.numericNumber < right.numericNumber;

    const bool descending = order == Qt::DescendingOrder;
    const Car &first = descending ? right : left;
    const Car &second = descending ? left : right;
    switch (column) {
    case PositionColumn:
        if (first.numericNumber != second.numericNumber)
            return first.numericNumber < second.numericNumber;
        return first.name < second.name;
    case ModelColumn:
        return first.name < second.name;
    default:
        return first.id < second.id;
    }
}

QString CarsListModel::recordId(int row) const
{
    const Car &car = m_cars.at(row);
    if (car.id != noId)
        return QString::number(car.id);
    return car.guid + QLatin1Char('\n') + car.name + QLatin1Char('\n') + car.number;
}

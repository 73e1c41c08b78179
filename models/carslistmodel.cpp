#include "models/carslistmodel.h"

#include "data/columnkeys.h"
#include "data/numbertext.h"
#include "models/cellcolors.h"

#include <algorithm>

namespace {

enum SortColumn { PositionColumn, ModelColumn };

} // namespace

int CarsListModel::s_sortColumn = ModelColumn;
Qt::SortOrder CarsListModel::s_sortOrder = Qt::AscendingOrder;

CarsListModel::Car CarsListModel::Car::fromJson(const QJsonObject &json)
{
    Car car;
    car.id = json.value(QLatin1String("id")).toInt(-1);
    car.name = json.value(QLatin1String("name")).toString();
    car.number = json.value(QLatin1String("num")).toString();
    car.guid = json.value(QLatin1String("car_guid")).toString();
    car.isAvailable = json.value(QLatin1String("available_for_runs")).toBool(true);
    car.numberValue = leadingInteger(car.number).value_or(0);
    return car;
}

CarsListModel::CarsListModel(QObject *parent) : ClearbackgroundTableModel(parent)
{
    appendColumn({tr("#"), Qt::AlignRight, 40, ColumnKeys::position, Qt::AlignCenter});
    appendColumn({tr("Модель"), Qt::AlignLeft, 80, ColumnKeys::model, Qt::AlignCenter});
    appendColumn({tr("Номер"), Qt::AlignRight, 80, ColumnKeys::number, Qt::AlignCenter});
}

int CarsListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_cars.size();
}

QVariant CarsListModel::data(const QModelIndex &index, int role) const
{
    if (isCell(index)) {
        const Car &car = m_cars.at(index.row());
        if (role == Qt::BackgroundRole && !car.isAvailable)
            return CellColors::unavailable;
        if (role == Qt::DisplayRole) {
            const QString key = columnKey(index.column());
            if (key == ColumnKeys::position)
                return index.row() + 1;
            if (key == ColumnKeys::model)
                return car.name;
            if (key == ColumnKeys::number)
                return car.number;
        }
    }
    return ClearbackgroundTableModel::data(index, role);
}

void CarsListModel::sort(int column, Qt::SortOrder order)
{
    if (column != -1) {
        s_sortColumn = column;
        s_sortOrder = order;
    }
    const LayoutChange change(*this);
    std::sort(m_cars.begin(), m_cars.end(),
              [](const Car &a, const Car &b) { return isBefore(a, b, s_sortColumn, s_sortOrder); });
}

bool CarsListModel::isBefore(const Car &a, const Car &b, int column, Qt::SortOrder order)
{
    const bool ascending = order == Qt::AscendingOrder;
    const auto inOrder = [ascending](const auto &x, const auto &y) { return ascending ? x < y : y < x; };
    switch (column) {
    case PositionColumn:
        return a.numberValue != b.numberValue ? inOrder(a.numberValue, b.numberValue)
                                              : inOrder(a.name, b.name);
    case ModelColumn:
        // Within a model the numbers run upwards in both directions.
        return a.name == b.name ? a.numberValue < b.numberValue : inOrder(a.name, b.name);
    default:
        return inOrder(a.id, b.id);
    }
}

void CarsListModel::loadFromJson(const QJsonObject &object, bool onlyAvailable)
{
    const LayoutChange change(*this);
    m_cars.clear();
    const QJsonArray cars = object.value(QLatin1String("cars")).toArray();
    for (const QJsonValue &value : cars) {
        const Car car = Car::fromJson(value.toObject());
        if (car.isAvailable || !onlyAvailable)
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

QString CarsListModel::recordId(int row) const
{
    return QString::number(m_cars.at(row).id);
}

#pragma once

#include "data/reglamentsource.h"

#include <QSortFilterProxyModel>

class MaintainanceModel;

/// Narrows the maintenance table to a car model and to cars that need service: an operation is over a limit
/// of 1 or more, or open. Sorting is left to the maintenance model.
class MaintainanceFilterProxy final : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit MaintainanceFilterProxy(QObject *parent = nullptr);

    /// Neither is owned; both may be null.
    void setMaintainanceModel(MaintainanceModel *model);
    void setReglament(const ReglamentSource *reglament);

    /// Only this car model; any model if not enabled or empty.
    void setModelFilter(const QString &text, int enabled);
    /// 0: off.
    void setNeedsServiceOnly(int on);
    void resetFilters();
    /// Filters anew after limits changed.
    void refilter();

    QString modelFilter() const { return m_modelFilter; }
    int needsServiceOnly() const { return m_needsServiceOnly; }

    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    bool isOverLimit(const MaintainanceItem &item) const;

    QString m_modelFilter;
    int m_needsServiceOnly = 0;
    const ReglamentSource *m_reglament = nullptr;
    MaintainanceModel *m_model = nullptr;
};

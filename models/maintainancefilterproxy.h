#pragma once

#include "models/maintainancemodel.h"
#include "models/tablefilterproxy.h"

#include <QPointer>

/// Filters the maintenance table by car model, by need of service, or both. Sorting is left to the table.
/// Call refilter() after the limits were edited. A car whose only exceeded limit is negative does not pass
/// as needing service, although its cell is red and it is reported as due; kept on purpose, because users and
/// hosts know it so.
class MaintainanceFilterProxy final : public TableFilterProxy
{
    Q_OBJECT
public:
    explicit MaintainanceFilterProxy(QObject *parent = nullptr);

    /// Only cars of exactly this model; of any model if not `enabled` or the text is empty.
    void setModelFilter(const QString &text, bool enabled);
    /// If `on`, only cars with an operation over its limit or still open; needs the reglament.
    void setNeedsServiceOnly(bool on);
    /// Accepts every car again.
    void resetFilters();
    /// Not owned, may be null.
    void setReglament(const ReglamentSource *reglament);
    /// The same as setSourceModel.
    void setMaintainanceModel(MaintainanceModel *model);
    void setSourceModel(QAbstractItemModel *model) override;

    QString modelFilter() const { return m_modelFilter; }
    bool needsServiceOnly() const { return m_needsServiceOnly; }

    /// Forwards the request to the table.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    void setFilters(const QString &modelFilter, bool needsServiceOnly);
    bool isOverLimit(const MaintainanceItem &car) const;

    QString m_modelFilter; ///< empty: any model
    bool m_needsServiceOnly = false;
    const ReglamentSource *m_reglament = nullptr;
    QPointer<MaintainanceModel> m_model;
};

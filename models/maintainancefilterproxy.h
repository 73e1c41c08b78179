#pragma once

#include "models/maintainancemodel.h"
#include "models/tablefilterproxy.h"

#include <QPointer>

/// Shows of the maintenance table the cars of one model, or those that need service, or both. Leaves sorting
/// to the table. To be refiltered when the reglament's limits were edited.
class MaintainanceFilterProxy final : public TableFilterProxy
{
    Q_OBJECT
public:
    explicit MaintainanceFilterProxy(QObject *parent = nullptr);

    /// Only cars of exactly this model; of any model if not `enabled` or the text is empty.
    void setModelFilter(const QString &text, bool enabled);
    /// If `on`, only cars with an operation over its limit or still open; needs the reglament.
    void setNeedsServiceOnly(bool on);
    /// Back to all cars.
    void resetFilters();
    /// Not owned, may be null.
    void setReglament(const ReglamentSource *reglament);
    /// The same as setSourceModel.
    void setMaintainanceModel(MaintainanceModel *model);
    void setSourceModel(QAbstractItemModel *model) override;

    QString modelFilter() const { return m_modelFilter; }
    bool needsServiceOnly() const { return m_needsServiceOnly; }

    /// Hands the request to the table.
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

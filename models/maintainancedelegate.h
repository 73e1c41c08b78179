#pragma once

#include "models/griddelegate.h"
#include "models/servicelogmodel.h"

#include <QColor>
#include <QPointer>

#include <optional>

class MaintainanceModel;
class ReglamentSource;

/// Colours the operation cells of the maintenance table by the limits: the lower half green, or red once a
/// limit is exceeded. Tool tips show what is left of the limits, and what is open on a red car. Any other
/// cell, and any other table, is shown as GridDelegate does.
class MaintainanceDelegate final : public GridDelegate
{
    Q_OBJECT
public:
    explicit MaintainanceDelegate(QObject *parent = nullptr);

    /// Not owned, may be null: no limits then.
    void setReglament(const ReglamentSource *reglament);
    /// Where the tool tips find who did the latest work; not owned, may be null.
    void setServiceLog(const ServiceLogModel *serviceLog);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    /// Always two text lines high, because a view with uniform row heights uses the height of the first row.
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    QString explanation(const QModelIndex &index) const override;

private:
    /// Draws the two lines separately, because only the lower one is over the band's colour.
    void paintHalves(QPainter *painter, const QStyleOptionViewItem &option, const QPalette &bandPalette,
                     const QModelIndex &index) const;
    /// None for a cell that shows no operation.
    std::optional<QColor> bandColor(const QModelIndex &index) const;
    Limits limitsOf(const MaintainanceModel &table, const QModelIndex &cell, int opId) const;
    QString operationExplanation(const MaintainanceModel &table, const QModelIndex &cell, int opId) const;
    QString openWorkExplanation(const MaintainanceItem &car) const;
    /// The service log's record that the counters start from; null if it is not in the log (any more).
    const ServiceLogItem *latestRecord(const OperationStat &stat) const;

    const ReglamentSource *m_reglament = nullptr;
    QPointer<const ServiceLogModel> m_serviceLog;
};

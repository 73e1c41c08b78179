#include "models/tablefilterproxy.h"

void TableFilterProxy::setSourceModel(QAbstractItemModel *model)
{
    disconnect(m_beforeSourceChange);
    disconnect(m_afterSourceChange);
    m_isSourceChanging = false;
    if (model) {
        // Connected before the base class connects its own slots, so that the flag is set when the base class
        // emits signals to its views.
        m_beforeSourceChange = connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this,
                                       [this] { m_isSourceChanging = true; });
        m_afterSourceChange =
            connect(model, &QAbstractItemModel::layoutChanged, this, [this] { m_isSourceChanging = false; });
    }
    QSortFilterProxyModel::setSourceModel(model);
}

void TableFilterProxy::refilter()
{
    // At the end of a change of the source all rows are filtered again anyway; before it, the base class
    // would announce rows that are about to be removed.
    if (!m_isSourceChanging)
        invalidateFilter();
}

#pragma once

#include "models/griddelegate.h"
#include "settings/serviceoperationsmodel.h"

/// Edits the names of service operations. The name of a row that is not stored is written also when it was
/// confirmed unchanged, because storing it may have failed before.
class OperationNameDelegate final : public GridDelegate
{
    Q_OBJECT
public:
    using GridDelegate::GridDelegate;

protected:
    bool isUnsaved(const QModelIndex &index) const override
    {
        const auto *model = qobject_cast<const ServiceOperationsModel *>(index.model());
        return model && index.isValid() && !model->isStored(index.row());
    }
};

#include "data/reglamentsource.h"

#include <algorithm>

const ModelReglament *ReglamentSource::findModel(const QString &model) const
{
    const QList<ModelReglament> &all = entries();
    const auto it = std::find_if(all.cbegin(), all.cend(),
                                 [&model](const ModelReglament &entry) { return entry.model == model; });
    return it == all.cend() ? nullptr : &*it;
}

Limits ReglamentSource::limits(const QString &model, int opId) const
{
    const ModelReglament *entry = findModel(model);
    return entry ? entry->limits.value(opId).limits : Limits();
}

#pragma once

#include "data/records.h"

/// The schedule as it is edited, one entry per car model; the tables read the limits here.
class ReglamentSource
{
public:
    virtual ~ReglamentSource() = default;

    virtual const QList<ModelReglament> &entries() const = 0;

    /// The first entry of that car model, compared exactly; null if there is none. Valid until the entries
    /// change.
    [[nodiscard]] const ModelReglament *findModel(const QString &model) const;
    /// The limits of one operation for a car model; none (zeros) if there is no such entry.
    [[nodiscard]] Limits limits(const QString &model, int opId) const;
};

#include "host/validation/check.h"

#include <algorithm>

const QVector<Check> &allChecks()
{
    static const QVector<Check> checks =
        libraryChecks() + messageChecks() + windowChecks() + databaseChecks();
    return checks;
}

const Check *findCheck(const QString &name)
{
    const QVector<Check> &checks = allChecks();
    const auto found =
        std::find_if(checks.begin(), checks.end(), [&](const Check &check) { return check.name == name; });
    return found == checks.end() ? nullptr : &*found;
}

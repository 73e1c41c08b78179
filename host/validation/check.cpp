#include "host/validation/check.h"

QVector<Check> allChecks()
{
    return libraryChecks() + messageChecks() + windowChecks() + databaseChecks();
}

std::optional<Check> findCheck(const QString &name)
{
    for (const Check &check : allChecks()) {
        if (check.name == name)
            return check;
    }
    return std::nullopt;
}

#include "data/columnkeys.h"

#include "data/numbertext.h"
#include "data/records.h"

namespace {
const QLatin1String operationPrefix("OP_");
}

QString ColumnKeys::operation(int opId)
{
    return operationPrefix + QString::number(opId);
}

bool ColumnKeys::isOperation(const QString &key)
{
    return key.startsWith(operationPrefix);
}

int ColumnKeys::operationId(const QString &key)
{
    if (!isOperation(key))
        return noId;
    return leadingInteger(QStringView(key).mid(operationPrefix.size())).value_or(noId);
}

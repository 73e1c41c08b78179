#include "host/plugin/widgetaddress.h"

#include <QJsonValue>
#include <QVariant>

QWidget *widgetAt(const QJsonValue &address)
{
    return address.isDouble() ? reinterpret_cast<QWidget *>(address.toVariant().toLongLong()) : nullptr;
}

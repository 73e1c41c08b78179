#include "resources/garageresources.h"

#include <QPixmap>

void initGarageResources()
{
    Q_INIT_RESOURCE(garage);
}

QIcon garageIcon(const QString &fileName)
{
    initGarageResources();
    // By the name alone, which has no suffix, QIcon would have the system's MIME database read.
    return QIcon(QPixmap(fileName, "PNG"));
}

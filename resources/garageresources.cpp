#include "resources/garageresources.h"

#include <QDir>

void initGarageResources()
{
    Q_INIT_RESOURCE(garage);
}

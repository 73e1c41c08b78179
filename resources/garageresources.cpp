#include "resources/garageresources.h"

#include <QtGlobal>

void initGarageResources()
{
    Q_INIT_RESOURCE(garage);
}

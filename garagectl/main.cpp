#include "data/qtcompatibility.h"
#include "garagectl/commandline.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(GARAGE_VERSION));
    QtCompatibility::useUtf8ForLocalTexts();
    return int(runCommandLine(argc, argv));
}

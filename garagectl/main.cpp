#include "garagectl/commandline.h"

#include <QCoreApplication>
#include <QTextCodec>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(GARAGE_VERSION));
    // Arguments, file names and output are UTF-8, also where a job of cron has no locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    return int(runCommandLine(argc, argv));
}

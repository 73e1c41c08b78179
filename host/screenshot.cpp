#include "screenshot.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QWidget>

QString Screenshot::save(QWidget &window, const QString &folder, const QString &name)
{
    QWidget *dialog = QApplication::activeModalWidget();
    const QString fileName = QDir(folder).filePath(name + QLatin1String(".png"));
    const bool isSaved = QDir().mkpath(folder) && (dialog ? dialog : &window)->grab().save(fileName);
    return isSaved ? QString()
                   : QCoreApplication::translate("Screenshot", "снимок %1 не записан").arg(fileName);
}

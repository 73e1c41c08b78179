#include "host/sessions/screenshot.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

namespace {

QPixmap pictureWithMenu(QWidget &window)
{
    QPixmap picture = window.grab();
    if (QWidget *menu = QApplication::activePopupWidget())
        QPainter(&picture).drawPixmap(window.mapFromGlobal(menu->pos()), menu->grab());
    return picture;
}

} // namespace

QString Screenshot::save(QWidget &window, const QString &folder, const QString &name, const QRect &part)
{
    QWidget *dialog = QApplication::activeModalWidget();
    const QPixmap picture = pictureWithMenu(dialog ? *dialog : window);
    const QString fileName = QDir(folder).filePath(name + QLatin1String(".png"));
    const bool isSaved =
        QDir().mkpath(folder) && (part.isNull() ? picture : picture.copy(part)).save(fileName);
    return isSaved ? QString()
                   : QCoreApplication::translate("Screenshot", "снимок %1 не записан").arg(fileName);
}

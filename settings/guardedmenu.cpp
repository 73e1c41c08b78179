#include "settings/guardedmenu.h"

#include <QAbstractScrollArea>
#include <QMenu>

#include <memory>

void execGuardedMenu(QAbstractScrollArea &view, const QPoint &position,
                     const std::function<void(QMenu &)> &fill)
{
    // A child of the view for its style sheets, but not destroyed with it while an action runs.
    const auto menu = std::make_unique<QMenu>(&view);
    QObject::connect(&view, &QObject::destroyed, menu.get(), [&menu] {
        menu->setParent(nullptr);
        menu->close();
    });
    fill(*menu);
    menu->exec(position);
}

#pragma once

#include <functional>

class QAbstractScrollArea;
class QMenu;
class QPoint;

/// Runs a context menu over the view to its end; `fill` adds its actions. The view may be destroyed
/// meanwhile, also by an action. `position` is on the screen.
void execGuardedMenu(QAbstractScrollArea &view, const QPoint &position,
                     const std::function<void(QMenu &)> &fill);

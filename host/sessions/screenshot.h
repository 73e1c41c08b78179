#pragma once

#include <QRect>
#include <QString>

class QWidget;

namespace Screenshot {

/// Saves what the window shows, or the dialog in front of it, as `folder`/`name`.png: with an open menu, and
/// if `part` is not null that part of it only. An error text, or empty.
QString save(QWidget &window, const QString &folder, const QString &name, const QRect &part = QRect());

} // namespace Screenshot

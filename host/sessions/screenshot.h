#pragma once

#include <QRect>
#include <QString>

class QWidget;

namespace Screenshot {

/// Saves a picture of the window, or of the modal dialog, as `folder`/`name`.png with its open menu.
/// `part` limits the picture unless it is null. An error text, or empty.
QString save(QWidget &window, const QString &folder, const QString &name, const QRect &part = QRect());

} // namespace Screenshot

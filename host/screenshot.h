#pragma once

#include <QString>

class QWidget;

namespace Screenshot {

/// Saves what the window shows, or the dialog in front of it, as `folder`/`name`.png. An error text, or
/// empty.
QString save(QWidget &window, const QString &folder, const QString &name);

} // namespace Screenshot

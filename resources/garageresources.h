#pragma once

#include <QIcon>

/// Makes the compiled-in icons (":/icons/...") available. May be called more than once; needed because a
/// static library's resources are dropped by the linker unless something references them.
void initGarageResources();

/// The icon of a file like ":/icons/iconService"; null if there is none. Needs a QGuiApplication.
QIcon garageIcon(const QString &fileName);

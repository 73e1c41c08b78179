#pragma once

#include <QCborMap>
#include <QString>

#include <optional>

/// What the file of a plug-in says of itself, read without loading it.
struct PluginMetadata
{
    int qtMajorVersion = 0; ///< of the Qt that it was built with
    QCborMap entries; ///< by the keys of Qt's plug-in loader
};

/// Without value if the file cannot be read or is no plug-in of Qt 5.12 or later.
std::optional<PluginMetadata> readPluginMetadata(const QString &fileName);

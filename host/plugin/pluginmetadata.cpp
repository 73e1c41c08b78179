#include "host/plugin/pluginmetadata.h"

#include <QCborValue>
#include <QFile>

std::optional<PluginMetadata> readPluginMetadata(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray library = file.readAll();
    for (const char *magic : {"QTMETADATA ", "qt-project!"}) { // Qt 5's, Qt 6's
        const int start = int(library.indexOf(magic));
        if (start < 0)
            continue;
        // The magic is followed by a byte and four numbers: layout, Qt's major and minor version, kind of
        // build.
        constexpr int headerSize = 5;
        constexpr int majorVersion = 2;
        const QByteArray header = library.mid(start + int(qstrlen(magic)), headerSize);
        QCborParserError error;
        const QCborValue block =
            QCborValue::fromCbor(library.mid(start + int(qstrlen(magic)) + headerSize, 4000), &error);
        if (error.error == QCborError::NoError && block.isMap())
            return PluginMetadata {header.at(majorVersion), block.toMap()};
    }
    return {};
}

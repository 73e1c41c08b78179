#pragma once

#include <QtPlugin>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

/// What differs between Qt 5 and Qt 6: the only place that looks at Qt's version.
namespace QtCompatibility {

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

/// Arguments, file names and output are UTF-8, also where a job of cron has no locale. Qt 6 knows no other.
inline void useUtf8ForLocalTexts()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

/// The entry point of a plug-in's library that returns its metadata.
constexpr char metadataEntryPoint[] = "qt_plugin_query_metadata";

/// The map, in CBOR, of the metadata that this entry point returns.
inline const char *metadataMap(QFunctionPointer entryPoint)
{
    constexpr int headerSize = 16;
    return reinterpret_cast<QtPluginMetaDataFunction>(entryPoint)() + headerSize;
}

#else

inline void useUtf8ForLocalTexts()
{
}

constexpr char metadataEntryPoint[] = "qt_plugin_query_metadata_v2";

inline const char *metadataMap(QFunctionPointer entryPoint)
{
    constexpr int headerSize = sizeof(QPluginMetaData::Header);
    return static_cast<const char *>(reinterpret_cast<QtPluginMetaDataFunction>(entryPoint)().data)
        + headerSize;
}

#endif

} // namespace QtCompatibility

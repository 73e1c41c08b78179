#pragma once

#include <QtGlobal>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

/// What differs between Qt 5 and Qt 6: the only place that looks at Qt's version.
namespace QtCompatibility {

/// Arguments, file names and output are UTF-8, also where a job of cron has no locale. Qt 6 knows no other.
inline void useUtf8ForLocalTexts()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
}

} // namespace QtCompatibility

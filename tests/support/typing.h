#pragma once

#include <QtTest>

/// Types a text of any language; QTest::keyClicks knows ASCII only.
inline void typeText(QWidget *widget, const QString &text)
{
    for (uint character : text.toUcs4())
        QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString::fromUcs4(&character, 1),
                            Qt::NoModifier);
}

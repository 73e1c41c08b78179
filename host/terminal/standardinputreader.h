#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// Reads standard input line by line without blocking the event loop. Skips blank lines, but counts them.
class StandardInputReader final : public QObject
{
    Q_OBJECT
public:
    explicit StandardInputReader(QObject *parent = nullptr);

signals:
    /// `number` counts from 1.
    void line(const QByteArray &text, int number);
    void ended();

private:
    void read();
    void announce(const QByteArray &text);
    void end();

    QSocketNotifier m_notifier;
    QByteArray m_buffer;
    int m_lineNumber = 0;
};

#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// Reads standard input line by line without blocking the event loop. Skips empty lines.
class StandardInputReader final : public QObject
{
    Q_OBJECT
public:
    explicit StandardInputReader(QObject *parent = nullptr);

signals:
    void line(const QByteArray &text);
    void ended();

private:
    void read();
    void end();

    QSocketNotifier m_notifier;
    QByteArray m_buffer;
};

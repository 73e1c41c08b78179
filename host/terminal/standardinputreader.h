#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// Standard input, line by line, without blocking the event loop.
class StandardLines final : public QObject
{
    Q_OBJECT
public:
    explicit StandardLines(QObject *parent = nullptr);

signals:
    void line(const QByteArray &text);
    void ended();

private:
    void read();
    void end();

    QSocketNotifier m_notifier;
    QByteArray m_buffer;
};

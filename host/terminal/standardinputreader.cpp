#include "host/terminal/standardinputreader.h"

#include <unistd.h>

StandardInputReader::StandardInputReader(QObject *parent)
    : QObject(parent), m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, &StandardInputReader::read);
}

void StandardInputReader::read()
{
    char piece[65536];
    const ssize_t size = ::read(STDIN_FILENO, piece, sizeof piece);
    if (size <= 0) {
        end();
        return;
    }
    m_buffer.append(piece, int(size));
    for (auto at = m_buffer.indexOf('\n'); at >= 0; at = m_buffer.indexOf('\n')) {
        const QByteArray text = m_buffer.left(at);
        m_buffer.remove(0, at + 1);
        announce(text);
    }
}

void StandardInputReader::announce(const QByteArray &text)
{
    ++m_lineNumber;
    if (const QByteArray trimmed = text.trimmed(); !trimmed.isEmpty())
        emit line(trimmed, m_lineNumber);
}

void StandardInputReader::end()
{
    m_notifier.setEnabled(false);
    announce(m_buffer);
    m_buffer.clear();
    emit ended();
}

#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

/// One input of the fuzzer, read from front to back; zeros once it is used up.
class ByteReader final
{
public:
    ByteReader(const uint8_t *data, size_t size)
        : m_bytes(QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size)))
    {
    }

    bool atEnd() const { return m_next >= m_bytes.size(); }
    int byte() { return atEnd() ? 0 : uchar(m_bytes.at(m_next++)); }
    /// 0 up to, not including, `limit`; 0 if there is nothing to choose from.
    int below(int limit) { return limit > 0 ? byte() % limit : 0; }
    quint64 integer(int byteCount)
    {
        quint64 value = 0;
        for (int i = 0; i < byteCount; ++i)
            value = value << 8 | quint64(byte());
        return value;
    }
    /// A length in one byte, then that many bytes or those that are left.
    QByteArray text() { return take(byte()); }
    QByteArray take(int length)
    {
        const QByteArray taken = m_bytes.mid(m_next, length);
        m_next += taken.size();
        return taken;
    }
    void drop() { m_next = m_bytes.size(); }

private:
    const QByteArray m_bytes;
    int m_next = 0;
};

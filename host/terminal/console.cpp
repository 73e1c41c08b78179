#include "host/terminal/console.h"

#include <cstdio>

namespace {

void write(FILE *stream, const QByteArray &line)
{
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

} // namespace

void Console::writeLine(const QByteArray &line)
{
    write(stdout, line);
}

void Console::writeLine(const QString &line)
{
    write(stdout, line.toUtf8());
}

void Console::writeError(const QString &text)
{
    write(stderr, "garage-host: " + text.toUtf8());
}

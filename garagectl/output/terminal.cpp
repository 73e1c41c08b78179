#include "garagectl/output/terminal.h"

#include "garagectl/exitcode.h"
#include "garagectl/wording.h"

#include <QtGlobal>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <unistd.h>

namespace {

bool isCapableTerminal(int descriptor)
{
    return isatty(descriptor) == 1 && qgetenv("TERM") != "dumb";
}

} // namespace

void Terminal::write(const QByteArray &bytes)
{
    const auto size = std::size_t(bytes.size());
    const bool isWritten =
        std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
    if (!isWritten) {
        throw Failure {ExitCode::NotWritten,
                       text("cannot write to standard output: %1", "вывод не записан: %1")
                           .arg(QString::fromLocal8Bit(std::strerror(errno)))};
    }
}

void Terminal::report(const QString &message)
{
    const QByteArray line = "garagectl: " + message.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr);
}

bool Terminal::hasColour()
{
    return qEnvironmentVariableIsEmpty("NO_COLOR") && isCapableTerminal(STDOUT_FILENO);
}

bool Terminal::showsProgress()
{
    return isCapableTerminal(STDERR_FILENO);
}

#include "host/terminal/endsignal.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

int pipeEnds[2] = {-1, -1};

void restoreDefaults()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

/// A signal handler may do little more than write.
void handle(int)
{
    restoreDefaults();
    const char byte = 0;
    if (::write(pipeEnds[1], &byte, 1) != 1)
        _exit(1);
}

} // namespace

EndSignal::EndSignal(QObject *parent) : QObject(parent)
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        m_notifier->setEnabled(false);
        emit received();
    });
    std::signal(SIGINT, &handle);
    std::signal(SIGTERM, &handle);
}

EndSignal::~EndSignal()
{
    restoreDefaults();
    m_notifier.reset();
    for (int &end : pipeEnds) {
        ::close(end);
        end = -1;
    }
}

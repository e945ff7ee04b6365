#include "platform/desktop/TerminationSignals.h"

#include <QSocketNotifier>

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace vormel {

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent)
{
    sigset_t watched;
    sigemptyset(&watched);
    sigaddset(&watched, SIGTERM);
    sigaddset(&watched, SIGINT);
    sigaddset(&watched, SIGHUP);
    if (pthread_sigmask(SIG_BLOCK, &watched, nullptr) == 0)
        m_descriptor = FileDescriptor(::signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
}

void TerminationSignals::listen()
{
    if (!m_descriptor.isOpen())
        return;
    const auto* const notifier = new QSocketNotifier(m_descriptor.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &TerminationSignals::take);
}

void TerminationSignals::take()
{
    signalfd_siginfo signal = {};
    while (::read(m_descriptor.get(), &signal, sizeof(signal)) == sizeof(signal))
        Q_EMIT terminationRequested();
}

} // namespace vormel

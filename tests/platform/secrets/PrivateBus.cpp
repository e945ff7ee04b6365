#include "PrivateBus.h"

#include <sys/prctl.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace vormel::fixtures {

namespace {

constexpr int patienceMs = 20000;

constexpr const char* rules = R"(<busconfig>
  <type>session</type>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  <servicedir>%2</servicedir>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

void endWithTheTest(QProcess& process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

PrivateBus::PrivateBus(const Sandbox& sandbox)
{
    const QString text = QString::fromLatin1(rules).arg(sandbox.path(u"bus"_s), sandbox.path(u"services"_s));
    endWithTheTest(m_daemon);
    m_daemon.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address"_s,
                                      u"--config-file="_s + sandbox.write(u"bus.conf"_s, text.toUtf8())});
    if (m_daemon.waitForReadyRead(patienceMs))
        m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
}

PrivateBus::~PrivateBus()
{
    QDBusConnection::disconnectFromBus(m_address);
    end();
}

QDBusConnection PrivateBus::connection() const
{
    return QDBusConnection::connectToBus(m_address, m_address);
}

void PrivateBus::end()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

} // namespace vormel::fixtures

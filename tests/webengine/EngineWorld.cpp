#include "EngineWorld.h"

#include <QDir>
#include <QProcess>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

EngineWorld* theWorld = nullptr;

} // namespace

EngineWorld::EngineWorld()
{
    theWorld = this;
    QDir(m_home.root()).mkpath(u"tmp"_s);
    qputenv("HOME", m_home.root().toUtf8());
    qputenv("TMPDIR", m_home.path(u"tmp"_s).toUtf8());
    for (const char* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qunsetenv(variable);
    // A page that takes all it can get is not to take it from this machine.
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            "--host-resolver-rules=\"MAP *.example 127.0.0.1\" --js-flags=--max-old-space-size=100");
    // It cannot work there.
    if (::geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    trustOurAuthority();
}

void EngineWorld::trustOurAuthority() const
{
    const QString folder = m_home.path(u".pki/nssdb"_s);
    QDir().mkpath(folder);
    const auto authority = m_certificates.writeAuthority(folder.toStdString());
    const QString database = u"sql:"_s + folder;
    const auto run = [](const QStringList& arguments) {
        if (QProcess::execute(QStringLiteral(VORMEL_CERTUTIL), arguments) != 0)
            qFatal("certutil failed");
    };
    run({u"-d"_s, database, u"-N"_s, u"--empty-password"_s});
    run({u"-d"_s, database, u"-A"_s, u"-t"_s, u"C,,"_s, u"-n"_s, u"ours"_s, u"-i"_s,
         QString::fromStdString(authority.string())});
}

void EngineWorld::TearDown()
{
    m_browser.reset();
    m_slowBrowser.reset();
}

EngineWorld& EngineWorld::instance()
{
    return *theWorld;
}

EngineBrowser& EngineWorld::made(std::unique_ptr<EngineBrowser>& browser, const QString& folder, Clock& clock) const
{
    if (!browser) {
        QDir().mkpath(m_home.path(folder));
        browser = std::make_unique<EngineBrowser>(m_home.path(folder), clock);
    }
    return *browser;
}

EngineBrowser& EngineWorld::browser()
{
    return made(m_browser, u"profile"_s, m_systemClock);
}

EngineBrowser& EngineWorld::slowBrowser()
{
    return made(m_slowBrowser, u"slow-profile"_s, m_manualClock);
}

} // namespace vormel

#include "EngineWorld.h"

#include "sites/BrowserEnvironment.h"

#include <QDir>

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
    sites::trustAuthority(m_home.root().toStdString(), m_certificates);
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

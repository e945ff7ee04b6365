#include "platform/web/PluginBrowser.h"

#include "platform/clock/Clock.h"
#include "platform/web/WebBrowserFactory.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QLibraryInfo>
#include <QPluginLoader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// The engine comes with the toolkit, so its libraries lie beside the toolkit's own. Where they do not, only loading
/// tells; that costs nothing if they are not there.
bool isLibraryThere(const QString& name)
{
    return QFileInfo::exists(QDir(QLibraryInfo::path(QLibraryInfo::LibrariesPath)).filePath(name)) ||
           QLibrary(name).load();
}

bool areLibrariesThere(const QJsonArray& names)
{
    return std::ranges::all_of(names, [](const QJsonValue& name) { return isLibraryThere(name.toString()); });
}

} // namespace

PluginBrowser::PluginBrowser(Places places, Clock& clock)
    : m_places(std::move(places))
    , m_clock(clock)
{}

PluginBrowser::~PluginBrowser() = default;

std::optional<WebBrowser::Absence> PluginBrowser::absence() const
{
    if (m_engine)
        return std::nullopt;
    if (!QFileInfo(m_places.plugin).isFile())
        return Absence::notInstalled;
    QPluginLoader loader(m_places.plugin);
    const QJsonObject told = loader.metaData();
    if (told["IID"_L1].toString() != QLatin1StringView(VORMEL_WEB_BROWSER_FACTORY))
        return Absence::doesNotStart;
    if (!areLibrariesThere(told["MetaData"_L1].toObject()["libraries"_L1].toArray()))
        return Absence::notInstalled;
    if (m_hasFailed && !(hasFolder() && loader.load()))
        return Absence::doesNotStart;
    return std::nullopt;
}

std::unique_ptr<WebPage> PluginBrowser::makePage(WebPage::Judge& judge)
{
    if (!m_engine)
        start();
    return m_engine ? m_engine->makePage(judge) : nullptr;
}

void PluginBrowser::start()
{
    m_hasFailed = true;
    QPluginLoader loader(m_places.plugin);
    auto* const factory = hasFolder() ? qobject_cast<WebBrowserFactory*>(loader.instance()) : nullptr;
    if (!factory)
        return;
    m_engine = factory->makeBrowser(m_places.profile, m_clock);
    m_hasFailed = !m_engine;
    if (m_hasFailed)
        return;
    for (const CookieLine& cookie : std::exchange(m_early, {}))
        m_engine->addCookie(cookie.text());
    connect(m_engine.get(), &WebBrowser::cookiesChanged, this, &WebBrowser::cookiesChanged);
}

bool PluginBrowser::hasFolder() const
{
    return QDir().mkpath(m_places.profile) &&
           QFile::setPermissions(m_places.profile, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QByteArrayList PluginBrowser::cookies() const
{
    if (m_engine)
        return m_engine->cookies();
    QByteArrayList lines;
    for (const CookieLine& cookie : m_early)
        lines.append(cookie.text());
    return lines;
}

void PluginBrowser::addCookie(const QByteArray& line)
{
    if (m_engine)
        return m_engine->addCookie(line);
    const std::optional<CookieLine> cookie = CookieLine::parse(line);
    if (!cookie)
        return;
    std::erase_if(m_early, [&](const CookieLine& early) { return early.isSameAs(*cookie); });
    m_early.push_back(*cookie);
    Q_EMIT cookiesChanged();
}

void PluginBrowser::removeCookies(const QByteArrayList& lines)
{
    if (m_engine)
        return m_engine->removeCookies(lines);
    std::size_t removed = 0;
    for (const QByteArray& line : lines) {
        const std::optional<CookieLine> cookie = CookieLine::parse(line);
        removed += std::erase_if(m_early, [&](const CookieLine& early) { return cookie && early.isSameAs(*cookie); });
    }
    if (removed > 0)
        Q_EMIT cookiesChanged();
}

} // namespace vormel

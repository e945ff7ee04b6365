#include "ui/clipboard/ClipboardWatch.h"

#include "engine/DownloadManager.h"
#include "resolvers/ResolverTables.h"
#include "text/HttpLinks.h"
#include "ui/clipboard/Clipboard.h"
#include "ui/notices/Notices.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString noticeKey = u"clipboard"_s;

QString copiedText(std::size_t count, AppLanguage language)
{
    const QString number = QString::number(count);
    return count == 1 ? pair(language, u"1 link copied", u"1 link copiato")
                      : number + pair(language, u" links copied", u" link copiati");
}

} // namespace

ClipboardWatch::ClipboardWatch(const Ports& ports)
    : m_ports(ports)
    , m_settings(ports.manager.settings())
    , m_salt(static_cast<std::size_t>(QRandomGenerator::global()->generate64()))
{
    connect(&m_ports.clipboard, &Clipboard::changed, this, &ClipboardWatch::look);
    connect(&m_settings, &AppSettings::changed, this, &ClipboardWatch::follow);
    follow();
}

ClipboardWatch::~ClipboardWatch()
{
    m_ports.notices.takeBack(noticeKey); // its action is ours
}

void ClipboardWatch::follow()
{
    const bool wasOn = std::exchange(m_isOn, m_settings.watchClipboard.value());
    if (wasOn && !m_isOn)
        m_ports.notices.takeBack(noticeKey);
}

void ClipboardWatch::look()
{
    constexpr qsizetype longest = 1 << 20;
    if (!m_isOn || m_ports.clipboard.isOurs())
        return;
    const QString text = m_ports.clipboard.text();
    if (text.isEmpty() || text.size() > longest)
        return;
    const std::size_t hash = qHash(text, m_salt);
    if (std::exchange(m_lastLooked, hash) == hash)
        return;
    const std::vector<Link> links = newLinks(text);
    if (!links.empty())
        offer(links);
}

/// Links of no known host may be anything that people read, and are left alone.
std::vector<Link> ClipboardWatch::newLinks(const QString& text) const
{
    const ResolverTables& resolvers = m_ports.manager.resolvers();
    std::vector<Link> known = httpLinks(text);
    std::erase_if(known, [&resolvers](const Link& link) {
        return !resolvers.hostResolverForURL(link) && !resolvers.containerResolverForURL(link);
    });
    return known.empty() ? known : m_ports.manager.newAmong(known);
}

void ClipboardWatch::offer(const std::vector<Link>& links)
{
    constexpr std::chrono::seconds life(20);
    Notice notice;
    notice.key = noticeKey;
    notice.glyph = Glyph::linkBadgePlus;
    notice.text = [count = links.size()](AppLanguage language) { return copiedText(count, language); };
    notice.actions = {{{u"Add…", u"Aggiungi…"}, [this, links] { Q_EMIT wanted(links); }}};
    notice.life = life;
    m_ports.notices.show(std::move(notice));
}

} // namespace vormel

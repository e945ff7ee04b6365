#include "resolvers/filestore/FilestoreWalk.h"

#include "platform/async/Background.h"
#include "resolvers/ResolverError.h"
#include "resolvers/filestore/FilestoreLinks.h"
#include "resolvers/filestore/FilestoreLogin.h"
#include "resolvers/filestore/FilestoreNames.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// A post may be answered with a file; no page worth reading is longer.
constexpr qint64 maxAnswerSize = 262144;

} // namespace

PageSession::RedirectRule FilestoreWalk::redirectRule(const QString& domain)
{
    return [domain](const QUrl& target) {
        const QString host = target.host().toLower();
        return host == domain || host == u"www."_s + domain;
    };
}

FilestoreWalk::FilestoreWalk(const Site& site, const PageSession& session, const Link& page)
    : m_site(site)
    , m_session(session)
    , m_page(page)
{}

QCoro::Task<ResolvedDownload> FilestoreWalk::run()
{
    const PageAnswer page = co_await m_session.get(m_page, u"https://%1/"_s.arg(m_site.domain));
    // Accounts with direct downloads are sent from the page to the file.
    if (page.refused)
        co_return found(*page.refused);
    if (page.error)
        throw ResolverError::networkError(*page.error);
    if (isLoggedOutAddress(page.url))
        throw ResolverError::authenticationFailed();
    Findings offer = co_await findings(page.html, m_page);
    m_filename = offer.title;
    if (offer.link && !offer.link->host().contains(m_site.domain, Qt::CaseInsensitive))
        co_return found(*offer.link);
    std::optional<Link> file;
    if (offer.link)
        file = co_await probed(*offer.link);
    if (!file && offer.form) {
        applyPremiumFields(offer.form->fields);
        file = co_await posted(*offer.form);
    }
    if (!file && m_nextForm) {
        DownloadForm form = *m_nextForm;
        if (!fieldValue(form.fields, u"method_premium"))
            setField(form.fields, u"method_premium"_s, u"1"_s);
        file = co_await posted(std::move(form));
    }
    if (!file)
        throw ResolverError::linkNotFound();
    co_return found(*file);
}

QCoro::Task<FilestoreWalk::Findings> FilestoreWalk::findings(QString html, Link base) const
{
    const auto read = [html, base, domain = m_site.domain] {
        return Findings{extractTitleName(html), extractDirectLink(html, base, domain), findDownloadForm(html, base)};
    };
    Findings result = co_await m_site.background.run(read);
    // The fields of a form are this site's affair, and no other host's.
    if (result.form && !isAtSite(result.form->action))
        result.form.reset();
    co_return result;
}

QCoro::Task<std::optional<Link>> FilestoreWalk::probed(Link link) const
{
    const std::optional<QString> referer = isAtSite(link) ? std::optional(m_page.absoluteString()) : std::nullopt;
    const PageAnswer answer = co_await m_session.probe(link, referer);
    if (answer.refused)
        co_return answer.refused;
    if (answer.error || answer.isHtml())
        co_return std::nullopt;
    co_return answer.url;
}

QCoro::Task<std::optional<Link>> FilestoreWalk::posted(DownloadForm form)
{
    const PageAnswer answer =
        co_await m_session.post(form.action, encodeFormFields(form.fields), m_page.absoluteString(), maxAnswerSize);
    if (answer.refused)
        co_return answer.refused;
    if (answer.error)
        throw ResolverError::networkError(*answer.error);
    if (!answer.isHtml())
        co_return answer.url;
    Findings offer = co_await findings(answer.html, answer.url);
    if (m_filename.isEmpty())
        m_filename = offer.title;
    m_nextForm = std::move(offer.form);
    co_return offer.link;
}

bool FilestoreWalk::isAtSite(const Link& url) const
{
    const QString host = url.host().toString().toLower();
    return host == m_page.host().toString().toLower() || host == m_site.domain || host.endsWith(u'.' + m_site.domain);
}

ResolvedDownload FilestoreWalk::found(const Link& file) const
{
    return {file, m_filename.isEmpty() ? std::nullopt : std::optional(m_filename)};
}

} // namespace vormel

#pragma once

#include "resolvers/HostResolver.h"
#include "resolvers/filestore/FilestoreForms.h"
#include "resolvers/pages/PageSession.h"

namespace vormel {

class Background;

/// The way from a file's page to the file, once, in one session. UI thread only; pages are read on other threads.
class FilestoreWalk
{
public:
    struct Site
    {
        Background& background;
        QString domain; ///< of the service
    };

    /// Redirects that stay at the site are followed; the target of any other is the file.
    [[nodiscard]] static PageSession::RedirectRule redirectRule(const QString& domain);

    /// The session must outlive this; its redirects go by the rule above.
    FilestoreWalk(const Site& site, const PageSession& session, const Link& page);

    /// Once only. Throws ResolverError: authenticationFailed where the session is not logged in, linkNotFound where the
    /// page leads to no file.
    [[nodiscard]] QCoro::Task<ResolvedDownload> run();

private:
    /// What one page offers.
    struct Findings
    {
        QString title;
        std::optional<Link> link;
        std::optional<DownloadForm> form;
    };

    [[nodiscard]] QCoro::Task<Findings> findings(QString html, Link base) const;
    [[nodiscard]] QCoro::Task<std::optional<Link>> probed(Link link) const;
    /// The file that the answer to the form leads to; else the answer's own form is there for the next post.
    [[nodiscard]] QCoro::Task<std::optional<Link>> posted(DownloadForm form);
    [[nodiscard]] bool isAtSite(const Link& url) const;
    [[nodiscard]] ResolvedDownload found(const Link& file) const;

    Site m_site;
    const PageSession& m_session;
    Link m_page;
    QString m_filename;
    std::optional<DownloadForm> m_nextForm;
};

} // namespace vormel

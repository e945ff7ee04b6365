#pragma once

#include "resolvers/terabytez/TerabytezResolveResult.h"
#include "resolvers/terabytez/TerabytezWebSession.h"

namespace vormel {

class Background;

/// The way from a file's page to the file, once, in one page. UI thread only; pages are read on other threads.
class TerabytezFileWalk
{
public:
    /// All must outlive this.
    TerabytezFileWalk(TerabytezWebSession& session, Background& background, const TerabytezSite& site);

    /// Once only. A stop of the session throws WalkStopped.
    [[nodiscard]] QCoro::Task<TerabytezResolveResult> run(Link url);

private:
    [[nodiscard]] QCoro::Task<> loadFilePage(Link url);
    [[nodiscard]] bool isAtLogin() const;
    /// Somebody signed in while the page was on its way to the login, which then leads elsewhere.
    [[nodiscard]] bool isPastLogin() const;
    [[nodiscard]] QCoro::Task<bool> hasForm();
    [[nodiscard]] QCoro::Task<> waitForFormOrDownload(int steps);
    [[nodiscard]] QCoro::Task<bool> submitDownloadForm();
    [[nodiscard]] QCoro::Task<std::optional<QString>> readTitleName();
    [[nodiscard]] QCoro::Task<std::optional<Link>> linkOnPage();
    /// The page's own address if it is a file's.
    [[nodiscard]] std::optional<Link> downloadShown() const;
    [[nodiscard]] TerabytezResolveResult found(const Link& file, const std::optional<QString>& name) const;

    TerabytezWebSession& m_session;
    Background& m_background;
    TerabytezSite m_site;
};

} // namespace vormel

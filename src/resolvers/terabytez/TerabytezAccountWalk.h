#pragma once

#include "resolvers/terabytez/TerabytezWebSession.h"

namespace vormel {

class Background;

/// The way from the site's first page to the account's own, once, in one page. UI thread only; pages are read on other
/// threads.
class TerabytezAccountWalk
{
public:
    /// All must outlive this.
    TerabytezAccountWalk(TerabytezWebSession& session, Background& background, const TerabytezSite& site);

    /// The account's page; nothing where nobody is signed in or the page does not come. Once only. A stop of the
    /// session throws WalkStopped.
    [[nodiscard]] QCoro::Task<std::optional<QString>> run();

private:
    [[nodiscard]] QCoro::Task<std::optional<QString>> pass();
    /// False at once where a login form shows, and after some time where nothing tells.
    [[nodiscard]] QCoro::Task<bool> isSignedIn();
    [[nodiscard]] QCoro::Task<std::optional<QString>> accountPage();
    [[nodiscard]] QCoro::Task<QString> html();

    TerabytezWebSession& m_session;
    Background& m_background;
    TerabytezSite m_site;
};

} // namespace vormel

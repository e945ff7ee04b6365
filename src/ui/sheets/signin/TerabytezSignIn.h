#pragma once

#include "model/PremiumAccountInfo.h"
#include "platform/async/Lifetime.h"
#include "platform/clock/Clock.h"
#include "platform/web/WebPage.h"
#include "resolvers/terabytez/TerabytezSite.h"
#include "ui/sheets/signin/SignInFill.h"

#include <QObject>

namespace vormel {

/// One sign-in at Terabytez in a page that the user works with: fills in what is stored, watches the page for signs of
/// a sign-in and of the account, and reads the account when the user is done. UI thread only.
class TerabytezSignIn final : public QObject
{
    Q_OBJECT

public:
    /// The clock must outlive it.
    TerabytezSignIn(TerabytezSite site, Clock& clock, QObject* parent);

    /// Has it load the form. The page must outlive this.
    void usePage(WebPage& page);
    /// Fills them in at once where the form is shown already.
    void setCredentials(const Credentials& credentials);
    void navigationOver(WebPage::End end);
    /// Reads the account, from its own page if need be, and ends with `loggedIn`. Nothing without a page, or while this
    /// is under way.
    void done();

    // Once there, both stay, whatever page comes next.
    [[nodiscard]] bool isLoggedIn() const { return m_isLoggedIn; }
    [[nodiscard]] const std::optional<QString>& accountHTML() const { return m_accountHTML; }
    /// The account is being read.
    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] bool canBeDone() const { return m_page && !m_isLoading; }

Q_SIGNALS:
    void changed();
    void loadRequested(const vormel::Link& url);
    /// The end. Without an info the account could not be read.
    void loggedIn(const std::optional<vormel::PremiumAccountInfo>& info);

private:
    [[nodiscard]] bool mayFill() const;
    void fill();
    [[nodiscard]] QCoro::Task<> fillAndRead(Lifetime::Watch lifetime);
    void tryLater();
    [[nodiscard]] QCoro::Task<> readAccount(Lifetime::Watch lifetime);
    [[nodiscard]] QCoro::Task<std::optional<QString>> html() const;
    [[nodiscard]] std::optional<PremiumAccountInfo> parsed(const std::optional<QString>& html) const;

    TerabytezSite m_site;
    Clock& m_clock;
    WebPage* m_page = nullptr;
    Credentials m_credentials;
    bool m_isLoggedIn = false;
    bool m_isLoading = false;
    std::optional<QString> m_accountHTML;
    int m_triesLeft = 16;
    Timer m_nextTry;
    Lifetime m_lifetime;
};

} // namespace vormel

#pragma once

#include "platform/web/WebBrowser.h"
#include "webengine/EngineCookies.h"
#include "webengine/RequestFilter.h"

#include <QWebEngineProfile>

namespace vormel {

/// The real engine, with one profile on disk. Its cookies are kept in memory only: what has to outlive the program is
/// for others to keep. UI thread only.
class EngineBrowser final : public WebBrowser
{
public:
    /// The folder is there; the clock outlives this.
    EngineBrowser(const QString& folder, Clock& clock);

    [[nodiscard]] std::optional<Absence> absence() const override { return std::nullopt; }
    [[nodiscard]] std::unique_ptr<WebPage> makePage(WebPage::Judge& judge) override;
    [[nodiscard]] QByteArrayList cookies() const override { return m_cookies.lines(); }
    void addCookie(const QByteArray& line) override { m_cookies.add(line); }
    void removeCookies(const QByteArrayList& lines) override { m_cookies.remove(lines); }

private:
    void setUp(const QString& folder);
    void setAttributes();
    void takeFile(const QUrl& url);

    Clock& m_clock;
    RequestFilter m_filter;
    QWebEngineProfile m_profile;
    EngineCookies m_cookies;
    QObject m_pages; ///< parent of them all, as they have to go before the profile
};

} // namespace vormel

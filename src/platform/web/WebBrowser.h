#pragma once

#include "platform/web/WebPage.h"

#include <QByteArrayList>
#include <QObject>

#include <memory>

namespace vormel {

/// The embedded engine: one profile, whose cookies all of its pages share. UI thread only.
class WebBrowser : public QObject
{
    Q_OBJECT

public:
    /// Why there are no pages.
    enum class Absence
    {
        notInstalled,
        doesNotStart,
    };

    /// Nothing where pages can be had. May be another answer each time, as packages come and go; starts nothing.
    [[nodiscard]] virtual std::optional<Absence> absence() const = 0;
    /// Null where pages cannot be had. The first page starts the engine. Pages go before their browser.
    [[nodiscard]] virtual std::unique_ptr<WebPage> makePage(WebPage::Judge& judge) = 0;
    /// The cookies of all pages, as lines that CookieStore gives and takes; those for HTTP alone have "#HttpOnly_"
    /// before their domain.
    [[nodiscard]] virtual QByteArrayList cookies() const = 0;
    /// Takes such a line, or drops it if it is none. Pages that are made later have it from their first request on.
    virtual void addCookie(const QByteArray& line) = 0;
    /// Takes away the cookies that these lines name by domain, path and name.
    virtual void removeCookies(const QByteArrayList& lines) = 0;

Q_SIGNALS:
    void cookiesChanged();
};

/// Where the engine is not installed.
class NoWebBrowser final : public WebBrowser
{
    Q_OBJECT

public:
    [[nodiscard]] std::optional<Absence> absence() const override { return Absence::notInstalled; }
    [[nodiscard]] std::unique_ptr<WebPage> makePage(WebPage::Judge& /*judge*/) override { return nullptr; }
    [[nodiscard]] QByteArrayList cookies() const override { return {}; }
    void addCookie(const QByteArray& /*line*/) override {}
    void removeCookies(const QByteArrayList& /*lines*/) override {}
};

} // namespace vormel

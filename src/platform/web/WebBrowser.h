#pragma once

#include "platform/web/WebPage.h"

#include <QByteArrayList>

#include <memory>

namespace vormel {

/// The embedded engine: one profile, whose cookies all of its pages share. UI thread only.
class WebBrowser
{
public:
    /// Why there are no pages.
    enum class Absence
    {
        notInstalled,
        doesNotStart,
    };

    WebBrowser() = default;
    WebBrowser(const WebBrowser&) = delete;
    WebBrowser& operator=(const WebBrowser&) = delete;
    virtual ~WebBrowser() = default;

    /// Nothing where pages can be had. May be another answer each time, as packages come and go.
    [[nodiscard]] virtual std::optional<Absence> absence() const = 0;
    /// Null where pages cannot be had.
    [[nodiscard]] virtual std::unique_ptr<WebPage> makePage(WebPage::Judge& judge) = 0;
    /// The cookies of all pages, as lines that CookieStore takes.
    [[nodiscard]] virtual QByteArrayList cookies() const = 0;
};

/// Where the engine is not installed.
class NoWebBrowser final : public WebBrowser
{
public:
    [[nodiscard]] std::optional<Absence> absence() const override { return Absence::notInstalled; }
    [[nodiscard]] std::unique_ptr<WebPage> makePage(WebPage::Judge& /*judge*/) override { return nullptr; }
    [[nodiscard]] QByteArrayList cookies() const override { return {}; }
};

} // namespace vormel

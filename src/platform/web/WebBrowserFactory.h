#pragma once

#include <QString>
#include <QtPlugin>

#include <memory>

namespace vormel {

class Clock;
class WebBrowser;

/// What the engine's plugin gives.
class WebBrowserFactory
{
public:
    WebBrowserFactory() = default;
    WebBrowserFactory(const WebBrowserFactory&) = delete;
    WebBrowserFactory& operator=(const WebBrowserFactory&) = delete;
    virtual ~WebBrowserFactory() = default;

    /// A browser with its profile in this folder, which is there; nothing is written outside of it. The clock outlives
    /// the browser, and the browser ends before the application does. To be called once for a folder.
    [[nodiscard]] virtual std::unique_ptr<WebBrowser> makeBrowser(const QString& folder, Clock& clock) = 0;
};

} // namespace vormel

#define VORMEL_WEB_BROWSER_FACTORY "org.vormel.WebBrowserFactory/1"
Q_DECLARE_INTERFACE(vormel::WebBrowserFactory, VORMEL_WEB_BROWSER_FACTORY)

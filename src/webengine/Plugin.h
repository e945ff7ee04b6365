#pragma once

#include "platform/web/WebBrowserFactory.h"

#include <QObject>

namespace vormel {

/// Gives the program the real engine.
class Plugin final : public QObject, public WebBrowserFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID VORMEL_WEB_BROWSER_FACTORY FILE "Plugin.json")
    Q_INTERFACES(vormel::WebBrowserFactory)

public:
    [[nodiscard]] std::unique_ptr<WebBrowser> makeBrowser(const QString& folder, Clock& clock) override;
};

} // namespace vormel

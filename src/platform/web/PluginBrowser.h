#pragma once

#include "platform/web/CookieLine.h"
#include "platform/web/WebBrowser.h"

#include <vector>

namespace vormel {

class Clock;

/// The engine in a plugin, which is loaded by the first page and never before. A plugin that is installed later is
/// found without a restart. UI thread only.
class PluginBrowser final : public WebBrowser
{
    Q_OBJECT

public:
    struct Places
    {
        QString plugin;
        QString profile; ///< a folder, made at the first page for its owner alone
    };

    /// The clock outlives this.
    PluginBrowser(Places places, Clock& clock);
    PluginBrowser(const PluginBrowser&) = delete;
    PluginBrowser& operator=(const PluginBrowser&) = delete;
    ~PluginBrowser() override;

    /// Reads what the plugin says of itself, and looks whether the libraries that it names are there.
    [[nodiscard]] std::optional<Absence> absence() const override;
    [[nodiscard]] std::unique_ptr<WebPage> makePage(WebPage::Judge& judge) override;
    /// Until there is an engine, these are the cookies that it will be given.
    [[nodiscard]] QByteArrayList cookies() const override;
    void addCookie(const QByteArray& line) override;
    void removeCookies(const QByteArrayList& lines) override;

private:
    void start();
    [[nodiscard]] bool hasFolder() const;

    Places m_places;
    Clock& m_clock;
    std::unique_ptr<WebBrowser> m_engine;
    std::vector<CookieLine> m_early;
    bool m_hasFailed = false; ///< at the last try to start
};

} // namespace vormel

#pragma once

#include "demo/BrowserWorld.h"
#include "demo/DemoScript.h"
#include "demo/DemoSets.h"
#include "demo/DemoSites.h"
#include "demo/PremiumSites.h"
#include "demo/Report.h"
#include "demo/WebSites.h"
#include "platform/desktop/Folders.h"

#include <optional>

namespace vormel {

class MainWindow;
class WebBrowser;

} // namespace vormel

namespace vormel::demo {

/// The real program with its window, over the demo's servers.
class DemoProgram
{
public:
    /// A folder that is thrown away afterwards, and the Trash of the desktop, which is to lie in it.
    struct Places
    {
        QString home;
        QString trash;
    };
    /// The world must outlive it.
    DemoProgram(const Places& places, BrowserWorld& world);

    /// For a person at the window. Ends when it is closed; gives the exit code.
    [[nodiscard]] int present();
    /// Plays by itself and checks what it does; screenshots go into the folder. Without the programs that make and
    /// unpack sets, their chapters are left out, and that with pages of the browser where there are none; with
    /// mustPlayAll that is a failure.
    [[nodiscard]] int perform(const QString& output, bool mustPlayAll);

private:
    [[nodiscard]] bool hasRoom() const;
    [[nodiscard]] CurlHttpClient::Options network() const;
    void introduce() const;
    void introducePremium() const;
    void introduceWeb() const;
    [[nodiscard]] std::vector<Link> linksToWatch() const;
    [[nodiscard]] QString packSets();
    void prepareSets(bool mustPlayAll);
    /// Why there are no pages of the browser; empty where there are.
    [[nodiscard]] QString objectionToPages(const WebBrowser& browser) const;
    void preparePages(const WebBrowser& browser, bool mustPlayAll);
    void play(const QString& output, bool mustPlayAll);
    void playScript(MainWindow& window, std::vector<Step> steps, const QString& output);
    void checkNewStart();

    Places m_places;
    Folders m_folders;
    BrowserWorld& m_world;
    DemoSites m_sites;
    PremiumServices m_services;
    std::optional<DemoSets> m_sets;        ///< once they are packed
    std::optional<PremiumSites> m_premium; ///< likewise
    std::optional<WebSites> m_web;         ///< likewise
    bool m_hasPages = false;               ///< there is a chapter for them
    Report m_report;
};

} // namespace vormel::demo

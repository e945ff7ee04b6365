#pragma once

#include "demo/DemoSets.h"
#include "demo/DemoSites.h"
#include "demo/PremiumSites.h"
#include "demo/Report.h"
#include "platform/desktop/Folders.h"

#include <optional>

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
    explicit DemoProgram(const Places& places);

    /// For a person at the window. Ends when it is closed; gives the exit code.
    [[nodiscard]] int present();
    /// Plays by itself and checks what it does; screenshots go into the folder. Without the programs that make and
    /// unpack sets, their chapter is left out; with mustPlayAll that is a failure.
    [[nodiscard]] int perform(const QString& output, bool mustPlayAll);

private:
    [[nodiscard]] bool hasRoom() const;
    [[nodiscard]] CurlHttpClient::Options network() const;
    void introduce() const;
    void introducePremium() const;
    [[nodiscard]] std::vector<Link> linksToWatch() const;
    [[nodiscard]] QString packSets();
    void prepareSets(bool mustPlayAll);
    void play(const QString& output);
    void checkNewStart();

    Places m_places;
    Folders m_folders;
    DemoSites m_sites;
    std::optional<DemoSets> m_sets;        ///< once they are packed
    std::optional<PremiumSites> m_premium; ///< likewise
    Report m_report;
};

} // namespace vormel::demo

#pragma once

#include "demo/AccountsOnScreen.h"
#include "demo/BrowserWorld.h"
#include "demo/DemoScript.h"
#include "demo/PageOnScreen.h"
#include "demo/QueueOnScreen.h"
#include "demo/SetOnStage.h"
#include "demo/Stage.h"
#include "demo/WebSites.h"

namespace vormel {

class MainWindow;

} // namespace vormel

namespace vormel::demo {

/// What only pages in the window can do: a CAPTCHA is solved and leads to links of two hosts, a sign-in that is asked
/// for is made, and both together become one film. Wants one account in the list, that of the other host, and leaves
/// its own there; the queue is what it was before. Must outlive its steps.
class WebChapter
{
public:
    /// All outlive the chapter.
    struct Surroundings
    {
        MainWindow& window;
        const WebSites& sites;
        const BrowserWorld& world;
    };

    WebChapter(const Stage& stage, const Surroundings& surroundings, const FilmSet& film);

    [[nodiscard]] std::vector<Step> steps();
    /// How far things are, in one line.
    [[nodiscard]] QString progress() const { return m_film.progress(); }

private:
    [[nodiscard]] Step openAccounts();
    [[nodiscard]] Step enterAccount();
    [[nodiscard]] Step saveAccount();
    [[nodiscard]] Step pasteContainer();
    [[nodiscard]] Step openContainer();
    [[nodiscard]] Step solve();
    [[nodiscard]] Step extract();
    [[nodiscard]] Step start();
    [[nodiscard]] Step signIn();
    [[nodiscard]] Step openAccountPage();
    [[nodiscard]] Step leaveSheet();
    [[nodiscard]] Step open();
    [[nodiscard]] Step finish();
    [[nodiscard]] Step clear();

    void startAll();
    [[nodiscard]] bool isInSight(const QString& name) const;
    /// A sheet with this name shows a page that this condition, a script, holds for.
    [[nodiscard]] QString missingPage(const QString& sheet, const QString& condition);
    [[nodiscard]] QString objectionToQueue(std::size_t itemsMore) const;
    [[nodiscard]] QString objectionToSignIns(int signIns) const;
    [[nodiscard]] QString objectionToWaiting() const;
    [[nodiscard]] QString objectionToPlaces() const;
    /// It may lie in the file of the passwords alone, and must, or the search would find nothing.
    [[nodiscard]] QString objectionToPassword() const;

    Stage m_stage;
    Surroundings m_surroundings;
    AccountsOnScreen m_accounts;
    QueueOnScreen m_list;
    PageOnScreen m_page;
    SetOnStage m_film;
    std::size_t m_itemsBefore = 0;
    int m_otherLoginsBefore = 0;
};

} // namespace vormel::demo

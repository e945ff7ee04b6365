#pragma once

#include "demo/AccountsOnScreen.h"
#include "demo/DemoScript.h"
#include "demo/PremiumSites.h"
#include "demo/QueueOnScreen.h"
#include "demo/SetOnStage.h"
#include "demo/Stage.h"

namespace vormel {

class MainWindow;

} // namespace vormel

namespace vormel::demo {

/// What the program is for, done at the window as a person would: an account is entered and checked, a container
/// becomes the links of one of its hosts, and these a film. Afterwards the queue is what it was before. Must outlive
/// its steps.
class PremiumChapter
{
public:
    /// Window and sites must outlive the chapter.
    PremiumChapter(const Stage& stage, MainWindow& window, const FilmSet& film, const PremiumSites& sites);

    [[nodiscard]] std::vector<Step> steps();
    /// How far things are, in one line.
    [[nodiscard]] QString progress() const { return m_film.progress(); }

private:
    [[nodiscard]] Step openAccounts();
    [[nodiscard]] Step enterAccount();
    [[nodiscard]] Step saveAccount();
    [[nodiscard]] Step checkAccount();
    [[nodiscard]] Step pasteContainer();
    [[nodiscard]] Step enterPassword();
    [[nodiscard]] Step openContainer();
    [[nodiscard]] Step chooseHost();
    [[nodiscard]] Step start();
    [[nodiscard]] Step finish();
    [[nodiscard]] Step clear();

    void pasteLink();
    void choose(const QString& host) const;
    void pressStartAll(qint64 capKBps);
    [[nodiscard]] QString missingPlan() const;
    [[nodiscard]] QString missingHosts() const;
    [[nodiscard]] QString objectionToQueue(std::size_t itemsMore) const;
    [[nodiscard]] QString objectionToLogins(int logins) const;
    [[nodiscard]] QString objectionToRepair() const;
    /// That of the account may lie in the file of the passwords alone, and must, or the search would find nothing.
    [[nodiscard]] QString objectionToAccountPassword() const;
    [[nodiscard]] QString objectionToContainerPassword() const;

    Stage m_stage;
    MainWindow& m_window;
    const PremiumSites& m_sites;
    AccountsOnScreen m_accounts;
    QueueOnScreen m_list;
    SetOnStage m_film;
    std::size_t m_itemsBefore = 0;
};

} // namespace vormel::demo

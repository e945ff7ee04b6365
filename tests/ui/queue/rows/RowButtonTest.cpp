#include "ui/queue/rows/RowButton.h"

#include "fixtures/EngineOnScript.h"
#include "fixtures/Languages.h"
#include "kit/PlatformTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;
using ::testing::Not;
using Kinds = std::vector<DownloadStatus::Kind>;

TEST(RowButton, EveryStatusHasItsButtonsAndEndsWithRemove)
{
    using B = RowButton;
    EXPECT_THAT(itemButtons(DownloadStatus::queued), ElementsAre(B::stop, B::resync, B::remove));
    EXPECT_THAT(itemButtons(DownloadStatus::resolving), ElementsAre(B::remove));
    EXPECT_THAT(itemButtons(DownloadStatus::expanding), ElementsAre(B::remove));
    EXPECT_THAT(itemButtons(DownloadStatus::downloading), ElementsAre(B::pause, B::stop, B::remove));
    EXPECT_THAT(itemButtons(DownloadStatus::paused), ElementsAre(B::resume, B::stop, B::resync, B::remove));
    EXPECT_THAT(itemButtons(DownloadStatus::stopped), ElementsAre(B::start, B::remove));
    EXPECT_THAT(itemButtons(DownloadStatus::completed), ElementsAre(B::showInViewer, B::redownload, B::remove));
    EXPECT_THAT(itemButtons(DownloadStatus::failed), ElementsAre(B::retry, B::remove));
}

std::vector<RowButton> buttonsOf(const Kinds& kinds, bool hasPendingRevFiles = false)
{
    DownloadGroup group{u"movie"_s, {}};
    for (const auto kind : kinds) {
        group.items.push_back(std::make_shared<DownloadItem>(fixtures::link(u"https://h.example/x"_s), ItemId::make()));
        group.items.back()->setStatus(kind);
    }
    return groupButtons(GroupTally(group), hasPendingRevFiles);
}

TEST(RowButton, TheStateOfAGroupDecidesItsFirstButtons)
{
    using S = DownloadStatus;
    using B = RowButton;
    EXPECT_THAT(buttonsOf({S::downloading, S::stopped, S::paused}),
                ElementsAre(B::pauseGroup, B::stopGroup, B::resyncGroup, B::removeGroup));
    EXPECT_THAT(buttonsOf({S::stopped, S::failed}), ElementsAre(B::startStoppedGroup, B::resyncGroup, B::removeGroup));
    EXPECT_THAT(buttonsOf({S::paused, S::stopped}),
                ElementsAre(B::startGroup, B::stopGroup, B::resyncGroup, B::removeGroup));
    EXPECT_THAT(buttonsOf({S::queued, S::resolving}),
                ElementsAre(B::startGroup, B::stopGroup, B::resyncGroup, B::removeGroup));
    EXPECT_THAT(buttonsOf({S::failed, S::resolving}), ElementsAre(B::resyncGroup, B::removeGroup));
}

TEST(RowButton, RepairAndVerifyAreOfferedWhereTheyCanHelp)
{
    using S = DownloadStatus;
    using B = RowButton;
    EXPECT_THAT(buttonsOf({S::completed, S::completed}, true),
                ElementsAre(B::repairGroup, B::verifyGroup, B::resyncGroup, B::removeGroup));
    EXPECT_THAT(buttonsOf({S::completed, S::failed}), ElementsAre(B::verifyGroup, B::resyncGroup, B::removeGroup));
    EXPECT_THAT(buttonsOf({S::failed, S::failed}), Not(IsSupersetOf({B::verifyGroup})));
    EXPECT_THAT(buttonsOf({S::completed}), Not(IsSupersetOf({B::verifyGroup})));
}

struct Text
{
    RowButton button;
    QStringView english;
    QStringView italian;
};

constexpr Text texts[] = {
    {RowButton::pause, u"Pause — resumes with Start All", u"Pausa — riprende con Avvia tutti"},
    {RowButton::stop, u"Stop — stays out of the queue until you start it",
     u"Ferma — resta fuori dalla coda finché non lo avvii"},
    {RowButton::resume, u"Resume", u"Riprendi"},
    {RowButton::start, u"Start — add back to the queue", u"Avvia — reinserisci nella coda"},
    {RowButton::resync, u"Resync with disk — complete if present, re-queue if missing",
     u"Risincronizza col disco — completa se presente, rimetti in coda se mancante"},
    {RowButton::retry, u"Retry", u"Riprova"},
    {RowButton::redownload, u"Re-download (deletes this file and fetches it again)",
     u"Riscarica (elimina questo file e lo scarica di nuovo)"},
    {RowButton::remove, u"Remove from list (deletes partial file)", u"Rimuovi dalla lista (elimina il file parziale)"},
    {RowButton::retryExtraction, u"Retry", u"Riprova"},
    {RowButton::pauseGroup, u"Pause group — resumes with Start All",
     u"Metti in pausa il gruppo — riprende con Avvia tutti"},
    {RowButton::stopGroup, u"Stop group — stays out of the queue until you start it",
     u"Ferma il gruppo — resta fuori dalla coda finché non lo avvii"},
    {RowButton::startStoppedGroup, u"Start group — add back to the queue", u"Avvia il gruppo — reinserisci nella coda"},
    {RowButton::startGroup, u"Start group", u"Avvia il gruppo"},
    {RowButton::repairGroup, u"Download .rev recovery files and repair the archive",
     u"Scarica i file di recupero .rev e ripara l'archivio"},
    {RowButton::verifyGroup, u"Verify (CRC) — re-download any corrupt or missing parts",
     u"Verifica (CRC) — riscarica le parti danneggiate o mancanti"},
    {RowButton::resyncGroup, u"Resync with disk — mark present files completed, re-queue missing parts",
     u"Risincronizza col disco — segna i file presenti come completati, rimetti in coda le parti mancanti"},
    {RowButton::removeGroup, u"Remove group from list (deletes partial files)",
     u"Rimuovi il gruppo dalla lista (elimina i file parziali)"},
    {RowButton::extract, u"Extract", u"Estrai"},
    {RowButton::stopExtraction, u"Stop extracting", u"Interrompi l'estrazione"},
    {RowButton::tryFailedAgain, u"Try all failed downloads of the group again; what is on disk is kept",
     u"Riprova tutti i download falliti del gruppo; ciò che è su disco resta"},
};

TEST(RowButton, SaysWhatItDoesInBothLanguages)
{
    for (const Text& text : texts) {
        EXPECT_EQ(buttonText(text.button, english), text.english);
        EXPECT_EQ(buttonText(text.button, italian), text.italian);
    }
}

TEST(RowButton, HasANameOfFewWordsForMenus)
{
    constexpr qsizetype mostWords = 3;
    for (const Text& text : texts) {
        for (const AppLanguage language : {english, italian}) {
            const QString name = buttonName(text.button, language);
            EXPECT_LE(name.split(u' ').size(), mostWords) << qPrintable(name);
            EXPECT_FALSE(name.isEmpty());
        }
    }
    EXPECT_EQ(buttonName(RowButton::startStoppedGroup, english), u"Start Group");
    EXPECT_EQ(buttonName(RowButton::resync, italian), u"Risincronizza");
    EXPECT_EQ(buttonName(RowButton::showGroup, english), buttonText(RowButton::showInViewer, english));
}

TEST(RowButton, CallsTheFileViewerByItsNameOnEachDesktop)
{
    constexpr auto text = PlatformText::showInViewer;
    EXPECT_EQ(platformText(text, english, Desktop::finder), u"Show in Finder");
    EXPECT_EQ(platformText(text, italian, Desktop::finder), u"Mostra nel Finder");
    EXPECT_EQ(platformText(text, english, Desktop::freedesktop), u"Show in File Manager");
    EXPECT_EQ(platformText(text, italian, Desktop::freedesktop), u"Mostra nel gestore file");
    EXPECT_EQ(buttonText(RowButton::showInViewer, english), platformText(text, english));
}

TEST(RowButton, PauseIsOrangeAndOnlyRemovalIsDestructive)
{
    for (int i = 0; i <= static_cast<int>(RowButton::showGroup); ++i) {
        const auto button = static_cast<RowButton>(i);
        const bool isPause = button == RowButton::pause || button == RowButton::pauseGroup;
        const bool isRemoval = button == RowButton::remove || button == RowButton::removeGroup;
        EXPECT_EQ(buttonLook(button).tint == Tint::orange, isPause) << i;
        EXPECT_EQ(buttonLook(button).isDestructive, isRemoval) << i;
    }
}

} // namespace
} // namespace vormel

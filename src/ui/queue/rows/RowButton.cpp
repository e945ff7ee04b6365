#include "ui/queue/rows/RowButton.h"

#include "kit/PlatformTexts.h"

#include <array>

namespace vormel {

namespace {

struct Entry
{
    RowButton button = RowButton::pause;
    ButtonLook look;
    QStringView english;
    QStringView italian;
    QStringView shortEnglish; ///< where a menu says less
    QStringView shortItalian;
};

constexpr ButtonLook plainLook(Glyph glyph, Tint tint = Tint::secondary)
{
    return {glyph, tint, false};
}

constexpr ButtonLook removal{Glyph::xmark, Tint::secondary, true};

/// In the order of RowButton. The file viewer's name depends on the desktop and stands in PlatformTexts.h.
constexpr std::array<Entry, 22> entries{{
    {RowButton::pause, plainLook(Glyph::pause, Tint::orange), u"Pause — resumes with Start All",
     u"Pausa — riprende con Avvia tutti", u"Pause", u"Pausa"},
    {RowButton::stop, plainLook(Glyph::stop), u"Stop — stays out of the queue until you start it",
     u"Ferma — resta fuori dalla coda finché non lo avvii", u"Stop", u"Ferma"},
    {RowButton::resume, plainLook(Glyph::play), u"Resume", u"Riprendi", {}, {}},
    {RowButton::start, plainLook(Glyph::play), u"Start — add back to the queue", u"Avvia — reinserisci nella coda",
     u"Start", u"Avvia"},
    {RowButton::resync, plainLook(Glyph::arrowTriangle2Circlepath),
     u"Resync with disk — complete if present, re-queue if missing",
     u"Risincronizza col disco — completa se presente, rimetti in coda se mancante", u"Resync", u"Risincronizza"},
    {RowButton::retry, plainLook(Glyph::arrowClockwise), u"Retry", u"Riprova", {}, {}},
    {RowButton::showInViewer, plainLook(Glyph::folder), {}, {}, {}, {}},
    {RowButton::redownload, plainLook(Glyph::arrowDownCircle), u"Re-download (deletes this file and fetches it again)",
     u"Riscarica (elimina questo file e lo scarica di nuovo)", u"Re-download", u"Riscarica"},
    {RowButton::remove, removal, u"Remove from list (deletes partial file)",
     u"Rimuovi dalla lista (elimina il file parziale)", u"Remove", u"Rimuovi"},
    {RowButton::retryExtraction, plainLook(Glyph::arrowClockwise), u"Retry", u"Riprova", {}, {}},
    {RowButton::pauseGroup, plainLook(Glyph::pause, Tint::orange), u"Pause group — resumes with Start All",
     u"Metti in pausa il gruppo — riprende con Avvia tutti", u"Pause Group", u"Pausa gruppo"},
    {RowButton::stopGroup, plainLook(Glyph::stop), u"Stop group — stays out of the queue until you start it",
     u"Ferma il gruppo — resta fuori dalla coda finché non lo avvii", u"Stop Group", u"Ferma gruppo"},
    {RowButton::startStoppedGroup, plainLook(Glyph::play), u"Start group — add back to the queue",
     u"Avvia il gruppo — reinserisci nella coda", u"Start Group", u"Avvia gruppo"},
    {RowButton::startGroup, plainLook(Glyph::play), u"Start group", u"Avvia il gruppo", u"Start Group",
     u"Avvia gruppo"},
    {RowButton::repairGroup, plainLook(Glyph::bandage), u"Download .rev recovery files and repair the archive",
     u"Scarica i file di recupero .rev e ripara l'archivio", u"Repair Archive", u"Ripara archivio"},
    {RowButton::verifyGroup, plainLook(Glyph::checkmarkSeal),
     u"Verify (CRC) — re-download any corrupt or missing parts",
     u"Verifica (CRC) — riscarica le parti danneggiate o mancanti", u"Verify (CRC)", u"Verifica (CRC)"},
    {RowButton::resyncGroup, plainLook(Glyph::arrowTriangle2Circlepath),
     u"Resync with disk — mark present files completed, re-queue missing parts",
     u"Risincronizza col disco — segna i file presenti come completati, rimetti in coda le parti mancanti", u"Resync",
     u"Risincronizza"},
    {RowButton::removeGroup, removal, u"Remove group from list (deletes partial files)",
     u"Rimuovi il gruppo dalla lista (elimina i file parziali)", u"Remove Group", u"Rimuovi gruppo"},
    {RowButton::extract, plainLook(Glyph::archivebox), u"Extract", u"Estrai", {}, {}},
    {RowButton::stopExtraction, plainLook(Glyph::stop), u"Stop extracting", u"Interrompi l'estrazione", {}, {}},
    {RowButton::tryFailedAgain, plainLook(Glyph::arrowClockwise),
     u"Try all failed downloads of the group again; what is on disk is kept",
     u"Riprova tutti i download falliti del gruppo; ciò che è su disco resta", u"Try Failed Again",
     u"Riprova i falliti"},
    {RowButton::showGroup, plainLook(Glyph::folder), {}, {}, {}, {}},
}};

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries.at(i).button != static_cast<RowButton>(i))
            return false;
    }
    return true;
}
static_assert(isInOrder());

const Entry& entryOf(RowButton button)
{
    return entries.at(static_cast<std::size_t>(button));
}

std::vector<RowButton> stateButtons(const GroupTally& tally)
{
    if (tally.downloading > 0)
        return {RowButton::pauseGroup, RowButton::stopGroup};
    if (tally.isStopped())
        return {RowButton::startStoppedGroup};
    if (tally.paused > 0 || tally.queued > 0)
        return {RowButton::startGroup, RowButton::stopGroup};
    return {};
}

} // namespace

ButtonLook buttonLook(RowButton button)
{
    return entryOf(button).look;
}

QString buttonText(RowButton button, AppLanguage language)
{
    if (button == RowButton::showInViewer || button == RowButton::showGroup)
        return platformText(PlatformText::showInViewer, language);
    return pair(language, entryOf(button).english, entryOf(button).italian);
}

QString buttonName(RowButton button, AppLanguage language)
{
    const Entry& entry = entryOf(button);
    return entry.shortEnglish.isEmpty() ? buttonText(button, language)
                                        : pair(language, entry.shortEnglish, entry.shortItalian);
}

std::vector<RowButton> itemButtons(DownloadStatus::Kind status)
{
    switch (status) {
    case DownloadStatus::queued:
        return {RowButton::stop, RowButton::resync, RowButton::remove};
    case DownloadStatus::resolving:
    case DownloadStatus::expanding:
        return {RowButton::remove};
    case DownloadStatus::downloading:
        return {RowButton::pause, RowButton::stop, RowButton::remove};
    case DownloadStatus::paused:
        return {RowButton::resume, RowButton::stop, RowButton::resync, RowButton::remove};
    case DownloadStatus::stopped:
        return {RowButton::start, RowButton::remove};
    case DownloadStatus::completed:
        return {RowButton::showInViewer, RowButton::redownload, RowButton::remove};
    case DownloadStatus::failed:
        return {RowButton::retry, RowButton::remove};
    }
    Q_UNREACHABLE();
}

std::vector<RowButton> groupButtons(const GroupTally& tally, bool hasPendingRevFiles)
{
    constexpr qsizetype minToVerify = 2;
    std::vector<RowButton> buttons = stateButtons(tally);
    if (hasPendingRevFiles)
        buttons.push_back(RowButton::repairGroup);
    if (tally.items >= minToVerify && tally.completed > 0)
        buttons.push_back(RowButton::verifyGroup);
    buttons.push_back(RowButton::resyncGroup);
    buttons.push_back(RowButton::removeGroup);
    return buttons;
}

} // namespace vormel

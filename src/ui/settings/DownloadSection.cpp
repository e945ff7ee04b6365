#include "ui/settings/DownloadSection.h"

#include "engine/DownloadManager.h"
#include "ui/settings/FolderRow.h"
#include "ui/settings/StepperRow.h"
#include "ui/settings/ToggleRow.h"

using namespace Qt::StringLiterals;

namespace vormel {

DownloadSection::DownloadSection(const ViewPorts& ports, QWidget* parent)
    : Card(ports.manager.settings(), u"downloadSection"_s, {u"Download", u"Download"}, parent)
{
    constexpr StepperRow::Range concurrent{1, 10};
    AppSettings& settings = ports.manager.settings();
    addRow(new StepperRow(settings, &AppSettings::maxConcurrentDownloads, u"concurrentDownloads"_s,
                          {u"Concurrent downloads", u"Download simultanei"}, concurrent, this));
    addToggles(settings);
    addRow(new FolderRow(ports, &AppSettings::downloadFolderPath, u"downloadFolder"_s,
                         {u"Download folder", u"Cartella di download"}, this));
}

void DownloadSection::addToggles(AppSettings& settings)
{
    auto* autoStart =
        new ToggleRow(settings, &AppSettings::autoStartDownloads, u"autoStartDownloads"_s,
                      {u"Auto-start downloads when added", u"Avvia i download automaticamente quando aggiunti"}, this);
    autoStart->setNote({u"Downloads are paused when added. Press ▶ in the toolbar to start them.",
                        u"I download vengono messi in pausa. Premi ▶ nella barra degli strumenti per avviarli."},
                       false);
    auto* revFiles = new ToggleRow(settings, &AppSettings::downloadRevFiles, u"downloadRevFiles"_s,
                                   {u"Download .rev recovery files", u"Scarica i file di recupero .rev"}, this);
    revFiles->setNote({u".rev files are skipped by default. Enable only if you need to repair a broken multi-part RAR.",
                       u"I file .rev vengono ignorati per impostazione predefinita. Abilitali solo se devi riparare un "
                       u"RAR multi-parte danneggiato."},
                      false);
    addRow(autoStart);
    addRow(revFiles);
}

} // namespace vormel

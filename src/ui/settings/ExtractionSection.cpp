#include "ui/settings/ExtractionSection.h"

#include "engine/DownloadManager.h"
#include "ui/settings/FolderRow.h"
#include "ui/settings/ToggleRow.h"

using namespace Qt::StringLiterals;

namespace vormel {

ExtractionSection::ExtractionSection(const ViewPorts& ports, QWidget* parent)
    : Card(ports.manager.settings(), u"extractionSection"_s, {u"Archive Extraction", u"Estrazione archivi"}, parent)
    , m_settings(ports.manager.settings())
{
    addRow(new ToggleRow(m_settings, &AppSettings::autoExtract, u"autoExtract"_s,
                         {u"Auto-extract after download", u"Estrai automaticamente dopo il download"}, this));
    addDisposal();
    addFolder(ports);
    addNames();
    connect(&m_settings, &AppSettings::changed, this, &ExtractionSection::showRows);
    showRows();
}

void ExtractionSection::addDisposal()
{
    m_trashArchive = new ToggleRow(
        m_settings, &AppSettings::deleteArchiveAfterExtract, u"deleteArchiveAfterExtract"_s,
        {u"Move archive to Trash after extraction", u"Sposta l'archivio nel cestino dopo l'estrazione"}, this);
    m_trashFolder = new ToggleRow(
        m_settings, &AppSettings::trashSourceFolderAfterExtract, u"trashSourceFolderAfterExtract"_s,
        {u"Move source folder to Trash (multi-part RAR)", u"Sposta la cartella sorgente nel cestino (RAR multi-parte)"},
        this);
    m_removeGroup = new ToggleRow(
        m_settings, &AppSettings::removeGroupAfterExtract, u"removeGroupAfterExtract"_s,
        {u"Remove group from list after extraction", u"Rimuovi il gruppo dalla lista dopo l'estrazione"}, this);
    addRow(m_trashArchive);
    addRow(m_trashFolder);
    addRow(m_removeGroup);
}

void ExtractionSection::addFolder(const ViewPorts& ports)
{
    auto* custom =
        new ToggleRow(m_settings, &AppSettings::useCustomExtractionFolder, u"useCustomExtractionFolder"_s,
                      {u"Use custom extraction folder", u"Usa una cartella di estrazione personalizzata"}, this);
    custom->setNote({u"Archives are extracted into the same folder as the downloaded file.",
                     u"Gli archivi vengono estratti nella stessa cartella del file scaricato."},
                    false);
    m_folder = new FolderRow(ports, &AppSettings::extractionFolderPath, u"extractionFolder"_s,
                             {u"Extraction folder", u"Cartella di estrazione"}, this);
    addRow(custom);
    addRow(m_folder);
}

void ExtractionSection::addNames()
{
    auto* clean = new ToggleRow(m_settings, &AppSettings::cleanExtractedNames, u"cleanExtractedNames"_s,
                                {u"Clean up extracted file names", u"Pulisci i nomi dei file estratti"}, this);
    clean->setNote({u"Strips the release string (resolution, codec, source, group…) from the end of extracted file "
                    u"names.",
                    u"Rimuove la stringa di release (risoluzione, codec, sorgente, gruppo…) dalla fine dei nomi dei "
                    u"file estratti."},
                   true);
    m_dotsToSpaces =
        new ToggleRow(m_settings, &AppSettings::extractedNamesDotsToSpaces, u"extractedNamesDotsToSpaces"_s,
                      {u"Replace dots with spaces", u"Sostituisci i punti con spazi"}, this);
    addRow(clean);
    addRow(m_dotsToSpaces);
}

void ExtractionSection::showRows()
{
    const bool extracts = m_settings.autoExtract.value();
    m_trashArchive->setVisible(extracts);
    m_trashFolder->setVisible(extracts && m_settings.deleteArchiveAfterExtract.value());
    m_removeGroup->setVisible(extracts);
    m_folder->setVisible(m_settings.useCustomExtractionFolder.value());
    m_dotsToSpaces->setVisible(m_settings.cleanExtractedNames.value());
}

} // namespace vormel

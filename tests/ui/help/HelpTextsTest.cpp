#include "config/Services.h"
#include "fixtures/EngineOnScript.h"
#include "fixtures/Languages.h"
#include "kit/PlatformTexts.h"
#include "ui/Part.h"
#include "ui/help/HelpFeatures.h"
#include "ui/help/HelpView.h"

#include <QLabel>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::english;
using fixtures::italian;

struct Wording
{
    const char* title;
    const char* detail; ///< "%1" stands for the first of the services
};

struct Row
{
    const char* name;
    qsizetype place;
    const char* icon;
    Tint color;
    Wording english;
    Wording italian;
};

const Row rows[] = {
    {"links",
     0,
     "link.badge.plus",
     Tint::blue,
     {"Add links", "Paste direct URLs or load CNL, FileCrypt and Keeplinks containers — the app resolves the real "
                   "download address automatically."},
     {"Aggiunta link", "Incolla URL diretti o carica container CNL, FileCrypt e Keeplinks — l'app risolve "
                       "automaticamente l'indirizzo di download reale."}},
    {"clickAndLoad",
     1,
     "globe",
     Tint::cyan,
     {"Click'N'Load from browser",
      "While Vormel is running, clicking a CNL button on any website sends the links directly to the app — no "
      "copy-paste needed. The app listens on port 9666, the standard Click'N'Load port."},
     {"Click'N'Load dal browser",
      "Con Vormel in esecuzione, cliccando un pulsante CNL su qualsiasi sito i link vengono inviati direttamente "
      "all'app — senza copia-incolla. L'app è in ascolto sulla porta 9666, la porta standard di Click'N'Load."}},
    {"queue",
     2,
     "arrow.up.arrow.down",
     Tint::orange,
     {"Rearrange the queue", "Drag items up or down to change the download order at any time."},
     {"Riordina la coda", "Trascina gli elementi su o giù per cambiare l'ordine di download in qualsiasi momento."}},
    {"accounts",
     3,
     "person.badge.key.fill",
     Tint::purple,
     {"Premium accounts", "Add your %1 and Terabytez credentials in the Accounts tab to unlock full speed and "
                          "exclusive content."},
     {"Account premium", "Aggiungi le credenziali di %1 e Terabytez nella scheda Account per sbloccare la velocità "
                         "massima e i contenuti esclusivi."}},
    {"volumes",
     4,
     "doc.zipper",
     Tint::teal,
     {"Multi-part RAR", "Parts are grouped automatically and downloaded in order. The group completes only when all "
                        "parts are ready."},
     {"RAR multi-parte", "Le parti vengono raggruppate automaticamente e scaricate in sequenza. Il gruppo si completa "
                         "solo quando tutte le parti sono pronte."}},
    {"verification",
     5,
     "checkmark.seal.fill",
     Tint::green,
     {"CRC Verify",
      "Use the Verify button on any group to check archive integrity and identify corrupt or missing parts."},
     {"Verifica CRC", "Usa il pulsante Verifica su un gruppo per controllare l'integrità dell'archivio e identificare "
                      "le parti corrotte o mancanti."}},
    {"repair",
     6,
     "wrench.and.screwdriver.fill",
     Tint::yellow,
     {".rev repair", "If .rev recovery files are present and enough volumes are intact, the app rebuilds missing parts "
                     "automatically after verification."},
     {"Riparazione .rev", "Se sono presenti file di recupero .rev e abbastanza volumi sono integri, l'app ricostruisce "
                          "automaticamente le parti mancanti dopo la verifica."}},
    {"extraction",
     7,
     "archivebox.fill",
     Tint::indigo,
     {"Auto-extract", "Enable in Settings to unpack archives automatically when a download or group completes."},
     {"Estrazione automatica", "Abilitalo nelle Impostazioni per estrarre automaticamente gli archivi al completamento "
                               "di un download o di un gruppo."}},
    {"names",
     8,
     "pencil.and.outline",
     Tint::pink,
     {"Auto-rename extracted files",
      "Strips release tags (resolution, codec, source, group…) from the end of extracted file names and optionally "
      "replaces dots with spaces — so \"Movie.Name.2024.1080p.BluRay.x264-GRP.mkv\" becomes \"Movie Name 2024.mkv\"."},
     {"Rinomina automatica file estratti",
      "Rimuove i tag di release (risoluzione, codec, sorgente, gruppo…) dalla fine dei nomi dei file estratti e "
      "sostituisce opzionalmente i punti con spazi — così \"Film.Nome.2024.1080p.BluRay.x264-GRP.mkv\" diventa \"Film "
      "Nome 2024.mkv\"."}},
    {"resuming",
     9,
     "bolt.fill",
     Tint::mint,
     {"Auto-resume", "Network drops are detected and the transfer resumes from where it stopped, without restarting "
                     "from zero."},
     {"Ripresa automatica", "Le interruzioni di rete vengono rilevate e il trasferimento riprende dal punto in cui si "
                            "era fermato, senza ricominciare da zero."}},
    {"speedLimit",
     10,
     "speedometer",
     Tint::red,
     {"Speed limit", "Cap bandwidth in Settings to keep downloads from saturating your connection."},
     {"Limite di velocità", "Limita la larghezza di banda nelle Impostazioni per evitare che i download saturino la "
                            "connessione."}},
    {"tools",
     11,
     "terminal.fill",
     Tint::gray,
     {"External tools", "RAR extraction and .rev repair require unrar/rar; 7-Zip archives require 7zz. Both are "
                        "installed via your package manager. Go to Settings → Available Tools to check status and "
                        "install with one click."},
     {"Strumenti esterni",
      "L'estrazione RAR e la riparazione .rev richiedono unrar/rar; gli archivi 7-Zip richiedono 7zz. Entrambi si "
      "installano tramite il gestore di pacchetti del sistema. Vai in Impostazioni → Strumenti disponibili per "
      "verificare lo stato e installare con un clic."}},
};

std::string withService(const char* text)
{
    return QString::fromUtf8(text).replace(u"%1"_s, filestoreDomain).toStdString();
}

class HelpTexts : public ::testing::TestWithParam<Row>
{};

TEST_P(HelpTexts, AreAsTheyShouldBeInBothLanguages)
{
    for (const auto& [language, wording] :
         {std::pair(english, GetParam().english), std::pair(italian, GetParam().italian)}) {
        const HelpFeature feature = helpFeatures(language, filestoreDomain).at(GetParam().place);
        EXPECT_EQ(feature.title.toStdString(), wording.title);
        EXPECT_EQ(feature.detail.toStdString(), withService(wording.detail));
    }
}

TEST_P(HelpTexts, HaveTheirIconInItsColour)
{
    const HelpFeature feature = helpFeatures(english, filestoreDomain).at(GetParam().place);
    EXPECT_EQ(glyphPath(feature.icon).toStdString(), std::string(":/kit/icons/") + GetParam().icon + ".svg");
    EXPECT_EQ(feature.color, GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(Features, HelpTexts, ::testing::ValuesIn(rows),
                         [](const auto& row) { return row.param.name; });

struct Part
{
    const char* name; ///< of the label
    const char* english;
    const char* italian;
};

const Part parts[] = {
    {"helpName", "Vormel", "Vormel"},
    {"helpKind", "Linux Download Manager", "Download Manager per Linux"},
    {"helpDescription",
     "Vormel is a Linux download manager designed to work with the main premium file hosting services such as %1 and "
     "Terabytez.",
     "Vormel è un download manager per Linux progettato per lavorare con i principali servizi di file hosting premium "
     "come %1 e Terabytez."},
    {"helpFeatures", "Features", "Funzionalità"},
    {"helpRequirement", "Requires Debian 12 or later, or a Linux system as recent.",
     "Richiede Debian 12 o versioni successive, o un sistema Linux altrettanto recente."},
};

class HelpPageTexts : public ::testing::TestWithParam<Part>
{};

TEST_P(HelpPageTexts, AreAsTheyShouldBeInBothLanguages)
{
    if (thisDesktop != Desktop::freedesktop)
        GTEST_SKIP() << "these are the texts of another desktop";
    fixtures::EngineOnScript engine;
    const HelpView view(engine.settings(), filestoreDomain);
    const auto& label = fixtures::partOf<QLabel>(view, GetParam().name);
    EXPECT_EQ(label.text().toStdString(), withService(GetParam().english));
    engine.settings().language.set(italian);
    EXPECT_EQ(label.text().toStdString(), withService(GetParam().italian));
}

INSTANTIATE_TEST_SUITE_P(Labels, HelpPageTexts, ::testing::ValuesIn(parts),
                         [](const auto& part) { return part.param.name; });

} // namespace
} // namespace vormel

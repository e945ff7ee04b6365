#include "kit/PlatformTexts.h"

#include <array>

namespace vormel {

namespace {

struct Row
{
    PlatformText text = PlatformText::showInViewer;
    TextPair finder = {};
    TextPair freedesktop = {};
};

/// In the order of PlatformText.
constexpr std::array<Row, 11> rows{{
    {PlatformText::showInViewer,
     {u"Show in Finder", u"Mostra nel Finder"},
     {u"Show in File Manager", u"Mostra nel gestore file"}},
    {PlatformText::openInViewer,
     {u"Open in Finder", u"Apri nel Finder"},
     {u"Open in File Manager", u"Apri nel gestore file"}},
    {PlatformText::packageManagerMissing,
     {u"Homebrew not found", u"Homebrew non trovato"},
     {u"No package manager found", u"Nessun gestore di pacchetti trovato"}},
    {PlatformText::packageManagerMissingIs,
     {u"Required to install unrar and 7-Zip.", u"Necessario per installare unrar e 7-Zip."},
     {u"Install unrar and 7-Zip with your system’s own tools.",
      u"Installa unrar e 7-Zip con gli strumenti del tuo sistema."}},
    {PlatformText::installerNote,
     {u"Note: the Homebrew installer will also install Xcode Command Line Tools (~1.5 GB) if not already present. "
      u"macOS will ask for your password.",
      u"Nota: il programma di installazione di Homebrew installerà anche gli Xcode Command Line Tools (~1.5 GB) se "
      u"non già presenti. macOS chiederà la password."},
     {u"Note: the Homebrew installer also needs git and a compiler, and tells you if they are missing. Your system "
      u"will ask for your password.",
      u"Nota: il programma di installazione di Homebrew richiede anche git e un compilatore e avvisa se mancano. Il "
      u"sistema chiederà la password."}},
    {PlatformText::passwordNote,
     {u"macOS may ask for your password.", u"macOS potrebbe chiedere la password."},
     {u"Your system may ask for your password.", u"Il sistema potrebbe chiedere la password."}},
    {PlatformText::kindOfProgram,
     {u"macOS Download Manager", u"Download Manager per macOS"},
     {u"Linux Download Manager", u"Download Manager per Linux"}},
    {PlatformText::description,
     {u"Vormel is a macOS download manager designed to work with the main premium file hosting services such as %1 and "
      u"Terabytez.",
      u"Vormel è un download manager per macOS progettato per lavorare con i principali servizi di file hosting "
      u"premium "
      u"come %1 e Terabytez."},
     {u"Vormel is a Linux download manager designed to work with the main premium file hosting services such as %1 and "
      u"Terabytez.",
      u"Vormel è un download manager per Linux progettato per lavorare con i principali servizi di file hosting "
      u"premium "
      u"come %1 e Terabytez."}},
    {PlatformText::requirement,
     {u"Requires macOS 12.4 Monterey or later.", u"Richiede macOS 12.4 Monterey o versioni successive."},
     {u"Requires Debian 12 or later, or a Linux system as recent.",
      u"Richiede Debian 12 o versioni successive, o un sistema Linux altrettanto recente."}},
    {PlatformText::webEngineCommand,
     {u"brew install qt", u"brew install qt"},
     {u"sudo apt install libqt6webenginewidgets6", u"sudo apt install libqt6webenginewidgets6"}},
    {PlatformText::externalTools,
     {u"RAR extraction and .rev repair require unrar/rar; 7-Zip archives require 7zz. Both are installed via Homebrew. "
      u"Go to Settings → Available Tools to check status and install with one click.",
      u"L'estrazione RAR e la riparazione .rev richiedono unrar/rar; gli archivi 7-Zip richiedono 7zz. Entrambi si "
      u"installano tramite Homebrew. Vai in Impostazioni → Strumenti disponibili per verificare lo stato e installare "
      u"con un clic."},
     {u"RAR extraction and .rev repair require unrar/rar; 7-Zip archives require 7zz. Both are installed via your "
      u"package manager. Go to Settings → Available Tools to check status and install with one click.",
      u"L'estrazione RAR e la riparazione .rev richiedono unrar/rar; gli archivi 7-Zip richiedono 7zz. Entrambi si "
      u"installano tramite il gestore di pacchetti del sistema. Vai in Impostazioni → Strumenti disponibili per "
      u"verificare lo stato e installare con un clic."}},
}};
static_assert(rows.size() == static_cast<std::size_t>(PlatformText::externalTools) + 1);

} // namespace

TextPair platformTexts(PlatformText text, Desktop desktop)
{
    const Row& row = rows.at(static_cast<std::size_t>(text));
    return desktop == Desktop::finder ? row.finder : row.freedesktop;
}

QString platformText(PlatformText text, AppLanguage language, Desktop desktop)
{
    return platformTexts(text, desktop).in(language);
}

} // namespace vormel

#include "ui/help/HelpFeatures.h"

#include "kit/PlatformTexts.h"

namespace vormel {

namespace {

HelpFeature links(AppLanguage language)
{
    return {Glyph::linkBadgePlus, Tint::blue, pair(language, u"Add links", u"Aggiunta link"),
            pair(language,
                 u"Paste direct URLs or load CNL, FileCrypt and Keeplinks containers — the app resolves the real "
                 u"download address automatically.",
                 u"Incolla URL diretti o carica container CNL, FileCrypt e Keeplinks — l'app risolve automaticamente "
                 u"l'indirizzo di download reale.")};
}

HelpFeature clickAndLoad(AppLanguage language)
{
    return {Glyph::globe, Tint::cyan, pair(language, u"Click'N'Load from browser", u"Click'N'Load dal browser"),
            pair(language,
                 u"While Vormel is running, clicking a CNL button on any website sends the links directly to the app — "
                 u"no copy-paste needed. The app listens on port 9666, the standard Click'N'Load port.",
                 u"Con Vormel in esecuzione, cliccando un pulsante CNL su qualsiasi sito i link vengono inviati "
                 u"direttamente all'app — senza copia-incolla. L'app è in ascolto sulla porta 9666, la porta standard "
                 u"di Click'N'Load.")};
}

HelpFeature queue(AppLanguage language)
{
    return {Glyph::arrowUpArrowDown, Tint::orange, pair(language, u"Rearrange the queue", u"Riordina la coda"),
            pair(language, u"Drag items up or down to change the download order at any time.",
                 u"Trascina gli elementi su o giù per cambiare l'ordine di download in qualsiasi momento.")};
}

HelpFeature accounts(AppLanguage language, const QString& filestore)
{
    return {Glyph::personKeyFill, Tint::purple, pair(language, u"Premium accounts", u"Account premium"),
            pair(language,
                 u"Add your %1 and Terabytez credentials in the Accounts tab to unlock full speed and exclusive "
                 u"content.",
                 u"Aggiungi le credenziali di %1 e Terabytez nella scheda Account per sbloccare la velocità massima e "
                 u"i contenuti esclusivi.")
                .arg(filestore)};
}

HelpFeature volumes(AppLanguage language)
{
    return {Glyph::docZipper, Tint::teal, pair(language, u"Multi-part RAR", u"RAR multi-parte"),
            pair(language,
                 u"Parts are grouped automatically and downloaded in order. The group completes only when all parts "
                 u"are ready.",
                 u"Le parti vengono raggruppate automaticamente e scaricate in sequenza. Il gruppo si completa solo "
                 u"quando tutte le parti sono pronte.")};
}

HelpFeature verification(AppLanguage language)
{
    return {Glyph::checkmarkSealFill, Tint::green, pair(language, u"CRC Verify", u"Verifica CRC"),
            pair(language,
                 u"Use the Verify button on any group to check archive integrity and identify corrupt or missing "
                 u"parts.",
                 u"Usa il pulsante Verifica su un gruppo per controllare l'integrità dell'archivio e identificare le "
                 u"parti corrotte o mancanti.")};
}

HelpFeature repair(AppLanguage language)
{
    return {Glyph::wrenchAndScrewdriverFill, Tint::yellow, pair(language, u".rev repair", u"Riparazione .rev"),
            pair(language,
                 u"If .rev recovery files are present and enough volumes are intact, the app rebuilds missing parts "
                 u"automatically after verification.",
                 u"Se sono presenti file di recupero .rev e abbastanza volumi sono integri, l'app ricostruisce "
                 u"automaticamente le parti mancanti dopo la verifica.")};
}

HelpFeature extraction(AppLanguage language)
{
    return {Glyph::archiveboxFill, Tint::indigo, pair(language, u"Auto-extract", u"Estrazione automatica"),
            pair(language, u"Enable in Settings to unpack archives automatically when a download or group completes.",
                 u"Abilitalo nelle Impostazioni per estrarre automaticamente gli archivi al completamento di un "
                 u"download o di un gruppo.")};
}

HelpFeature names(AppLanguage language)
{
    return {Glyph::pencilAndOutline, Tint::pink,
            pair(language, u"Auto-rename extracted files", u"Rinomina automatica file estratti"),
            pair(language,
                 u"Strips release tags (resolution, codec, source, group…) from the end of extracted file names and "
                 u"optionally replaces dots with spaces — so \"Movie.Name.2024.1080p.BluRay.x264-GRP.mkv\" becomes "
                 u"\"Movie Name 2024.mkv\".",
                 u"Rimuove i tag di release (risoluzione, codec, sorgente, gruppo…) dalla fine dei nomi dei file "
                 u"estratti e sostituisce opzionalmente i punti con spazi — così "
                 u"\"Film.Nome.2024.1080p.BluRay.x264-GRP.mkv\" diventa \"Film Nome 2024.mkv\".")};
}

HelpFeature resuming(AppLanguage language)
{
    return {Glyph::boltFill, Tint::mint, pair(language, u"Auto-resume", u"Ripresa automatica"),
            pair(language,
                 u"Network drops are detected and the transfer resumes from where it stopped, without restarting from "
                 u"zero.",
                 u"Le interruzioni di rete vengono rilevate e il trasferimento riprende dal punto in cui si era "
                 u"fermato, senza ricominciare da zero.")};
}

HelpFeature speedLimit(AppLanguage language)
{
    return {Glyph::speedometer, Tint::red, pair(language, u"Speed limit", u"Limite di velocità"),
            pair(language, u"Cap bandwidth in Settings to keep downloads from saturating your connection.",
                 u"Limita la larghezza di banda nelle Impostazioni per evitare che i download saturino la "
                 u"connessione.")};
}

HelpFeature tools(AppLanguage language)
{
    return {Glyph::terminalFill, Tint::gray, pair(language, u"External tools", u"Strumenti esterni"),
            platformText(PlatformText::externalTools, language)};
}

} // namespace

QList<HelpFeature> helpFeatures(AppLanguage language, const QString& filestore)
{
    return {links(language),   clickAndLoad(language), queue(language),      accounts(language, filestore),
            volumes(language), verification(language), repair(language),     extraction(language),
            names(language),   resuming(language),     speedLimit(language), tools(language)};
}

} // namespace vormel

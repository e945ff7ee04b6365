#include "engine/transfer/TransferTexts.h"

#include "model/AppSettings.h"
#include "model/NetworkErrorText.h"
#include "text/ByteCount.h"
#include "text/PercentCoding.h"

#include <QFileInfo>

#include <cerrno>
#include <system_error>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString missingText(int systemError, const AppSettings& settings)
{
    const AppLanguage language = settings.language.value();
    if (!QFileInfo(settings.downloadFolderPath.value()).isDir())
        return pair(language, u"The download folder is missing.", u"La cartella dei download non esiste.");
    if (systemError == ENOTDIR)
        return pair(language, u"A file stands where the folder of this download should be.",
                    u"Al posto della cartella di questo download c'è un file.");
    return pair(language, u"The file or its folder was removed by another program — retry",
                u"Il file o la sua cartella è stato rimosso da un altro programma — riprova");
}

/// The page is only its beginning and may end inside a character.
QString pageText(QByteArrayView page)
{
    constexpr int maxTail = 3;
    for (int cut = 0; cut <= maxTail && cut <= page.size(); ++cut) {
        if (const std::optional<QString> text = strictUtf8(page.chopped(cut)))
            return *text;
    }
    return {};
}

} // namespace

QString webPageText(const QByteArray& page, AppLanguage language)
{
    const QString text = pageText(page).toLower();
    if (text.contains(u"geolocation") || text.contains(u"blocked country")) {
        return pair(language, u"Download blocked: the server does not allow access from your country (geo-restricted).",
                    u"Download bloccato: il server non consente l'accesso dal tuo paese (geo-restriction).");
    }
    return pair(language,
                u"Server returned a web page, not the file — the link may be expired or need a premium account.",
                u"Il server ha restituito una pagina web, non il file — il link potrebbe essere scaduto o richiedere "
                u"un account "
                u"premium.");
}

QString incompleteText(qint64 received, qint64 total)
{
    return u"Incomplete download (%1 of %2) — retry"_s.arg(byteCountText(received), byteCountText(total));
}

QString endText(const TransferEnd& end, const AppSettings& settings)
{
    const AppLanguage language = settings.language.value();
    switch (end.reason) {
    case TransferEnd::Reason::errorAnswer:
        return pair(language, u"The server answered with error %1 instead of the file — retry",
                    u"Il server ha risposto con l'errore %1 invece del file — riprova")
            .arg(end.statusCode);
    case TransferEnd::Reason::foreignRange:
        return pair(language, u"The server sent another part of the file than the one asked for — retry",
                    u"Il server ha inviato una parte del file diversa da quella richiesta — riprova");
    case TransferEnd::Reason::sourceChanged:
        return pair(language, u"The file on the server has changed — retry to download it from the start",
                    u"Il file sul server è cambiato — riprova per scaricarlo dall'inizio");
    case TransferEnd::Reason::overlong:
        return pair(language, u"The server sent more than it had announced — retry",
                    u"Il server ha inviato più dati di quanto annunciato — riprova");
    case TransferEnd::Reason::notWritten:
        return fileErrorText(end.systemError, settings);
    case TransferEnd::Reason::webPage:
        return webPageText(end.page, language);
    case TransferEnd::Reason::networkError:
    case TransferEnd::Reason::finished:
        return networkErrorText(end.error.kind, language);
    }
    Q_UNREACHABLE();
}

QString fileErrorText(int systemError, const AppSettings& settings)
{
    const AppLanguage language = settings.language.value();
    switch (systemError) {
    case ENOSPC:
    case EDQUOT:
        return pair(language, u"The disk is full.", u"Il disco è pieno.");
    case EACCES:
    case EPERM:
    case EROFS:
        return pair(language, u"The download folder cannot be written to.",
                    u"Impossibile scrivere nella cartella dei download.");
    case ENOENT:
    case ENOTDIR:
        return missingText(systemError, settings);
    case EXDEV:
        return pair(language, u"The finished file could not be moved to its folder, which is on another disk.",
                    u"Impossibile spostare il file completato nella sua cartella, che si trova su un altro disco.");
    case EMLINK:
    case ESTALE:
        return pair(language, u"The partial file was changed by another program — retry",
                    u"Il file parziale è stato modificato da un altro programma — riprova");
    default:
        return pair(language, u"The file could not be written: ", u"Impossibile scrivere il file: ") +
               QString::fromStdString(std::generic_category().message(systemError));
    }
}

} // namespace vormel

#include "model/NetworkErrorText.h"

using namespace Qt::StringLiterals;

namespace vormel {

QString networkErrorText(HttpError::Kind kind, AppLanguage language)
{
    switch (kind) {
    case HttpError::Kind::cancelled:
        return pair(language, u"The download was cancelled.", u"Il download è stato annullato.");
    case HttpError::Kind::timedOut:
        return pair(language, u"The server did not answer in time.", u"Il server non ha risposto in tempo.");
    case HttpError::Kind::cannotFindHost:
        return pair(language, u"The server could not be found.", u"Impossibile trovare il server.");
    case HttpError::Kind::cannotConnect:
        return pair(language, u"Could not connect to the server.", u"Impossibile connettersi al server.");
    case HttpError::Kind::connectionLost:
        return pair(language, u"The connection to the server was lost.",
                    u"La connessione al server è stata interrotta.");
    case HttpError::Kind::secureConnectionFailed:
        return pair(language, u"A secure connection could not be made.",
                    u"Impossibile stabilire una connessione sicura.");
    case HttpError::Kind::certificateUntrusted:
        return pair(language, u"The server's certificate is not trusted.",
                    u"Il certificato del server non è attendibile.");
    case HttpError::Kind::tooManyRedirects:
        return pair(language, u"The server redirected too many times.",
                    u"Il server ha effettuato troppi reindirizzamenti.");
    case HttpError::Kind::unsupportedUrl:
        return pair(language, u"The address cannot be downloaded.", u"Impossibile scaricare da questo indirizzo.");
    case HttpError::Kind::badServerResponse:
        return pair(language, u"The server's answer makes no sense.", u"La risposta del server non è valida.");
    case HttpError::Kind::other:
        return pair(language, u"The download failed.", u"Il download non è riuscito.");
    }
    Q_UNREACHABLE();
}

} // namespace vormel

#include "model/ServicesProblem.h"

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

using Reason = ServicesProblem::Reason;

/// Of the file as a whole, and of what stands in it.
TextPair formReason(Reason reason)
{
    switch (reason) {
    case Reason::tooLarge:
        return {u"The file is larger than 64 KiB.", u"Il file è più grande di 64 KiB."};
    case Reason::notJson:
        return {u"This is not JSON in UTF-8.", u"Questo non è JSON in UTF-8."};
    case Reason::notObject:
        return {u"The file must be one object in braces.",
                u"Il file deve essere un solo oggetto tra parentesi graffe."};
    case Reason::unknownKey:
        return {u"There is no such key.", u"Questa chiave non esiste."};
    case Reason::repeatedKey:
        return {u"The key stands here again.", u"La chiave è già presente più sopra."};
    case Reason::wrongType:
        return {u"Here belongs a text in quotes, or a list of them in brackets, as in the example.",
                u"Qui va un testo tra virgolette, o un elenco di testi tra parentesi quadre, come nell'esempio."};
    case Reason::wrongCount:
        return {u"The list must have %1 domains.", u"L'elenco deve avere %1 domini."};
    default:
        return {u"The file cannot be read.", u"Impossibile leggere il file."};
    }
}

/// Of a value by itself, and beside others.
TextPair valueReason(Reason reason)
{
    switch (reason) {
    case Reason::noName:
        return {u"A name has 1 to 100 characters that can be seen.", u"Un nome ha da 1 a 100 caratteri visibili."};
    case Reason::noDomain:
        return {u"This is not a domain such as files.example, without scheme, port, path and blanks.",
                u"Questo non è un dominio come files.example, senza schema, porta, percorso e spazi."};
    case Reason::capitals:
        return {u"A domain must be in small letters.", u"Un dominio va scritto in minuscolo."};
    case Reason::ipAddress:
        return {u"An IP address is not a domain.", u"Un indirizzo IP non è un dominio."};
    case Reason::localDomain:
        return {u"This domain is this computer's or this network's own.",
                u"Questo dominio è di questo computer o di questa rete."};
    case Reason::noTerabytezWord:
        return {u"This must have “terabytez.” in it.", u"Deve contenere «terabytez.»."};
    case Reason::noRootUrl:
        return {u"This is not the address of a site such as https://www.files.example/.",
                u"Questo non è l'indirizzo di un sito come https://www.files.example/."};
    case Reason::foreignRoot:
        return {u"keeplinksRootUrl must lie at one of the keeplinksDomains.",
                u"keeplinksRootUrl deve trovarsi in uno dei keeplinksDomains."};
    case Reason::repeatedValue:
        return {u"“%1” is there already.", u"«%1» è già presente."};
    case Reason::clash:
        return {u"Its links could not be told from those of “%1”.",
                u"I suoi link non si distinguerebbero da quelli di «%1»."};
    default:
        return formReason(reason);
    }
}

} // namespace

QString ServicesProblem::text(AppLanguage language) const
{
    constexpr qsizetype longestKey = 40; // an unknown one may be of any length
    QString place = u"services.json"_s;
    if (line > 0)
        place += pair(language, u", line ", u", riga ") + QString::number(line);
    if (!key.isEmpty())
        place += u", "_s + key.left(longestKey).simplified();
    return place + u": "_s + valueReason(reason).in(language).replace(u"%1"_s, detail);
}

} // namespace vormel

#include "app/attention/EndNotification.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString titleOf(GroupEnd::Kind kind, AppLanguage language)
{
    switch (kind) {
    case GroupEnd::downloaded:
        return pair(language, u"Download finished", u"Download completato");
    case GroupEnd::extracted:
        return pair(language, u"Archive extracted", u"Archivio estratto");
    case GroupEnd::downloadFailed:
        return pair(language, u"Download failed", u"Download fallito");
    case GroupEnd::extractionFailed:
        return pair(language, u"Extraction failed", u"Estrazione fallita");
    }
    Q_UNREACHABLE();
}

QString finishedText(qsizetype count, AppLanguage language)
{
    return count == 1 ? pair(language, u"1 download finished", u"1 download completato")
                      : pair(language, u"%1 downloads finished", u"%1 download completati").arg(count);
}

/// Alone, or behind those that have finished.
QString failedText(qsizetype count, bool isAlone, AppLanguage language)
{
    if (isAlone)
        return pair(language, u"%1 downloads failed", u"%1 download falliti").arg(count);
    return (count == 1 ? pair(language, u", %1 failed", u", %1 fallito")
                       : pair(language, u", %1 failed", u", %1 falliti"))
        .arg(count);
}

QString titleOf(const std::vector<GroupEnd>& ends, AppLanguage language)
{
    const qsizetype failed =
        std::count_if(ends.begin(), ends.end(), [](const GroupEnd& end) { return end.isFailure(); });
    const qsizetype finished = static_cast<qsizetype>(ends.size()) - failed;
    if (finished == 0)
        return failedText(failed, true, language);
    return finishedText(finished, language) + (failed == 0 ? QString() : failedText(failed, false, language));
}

/// Names and messages come from outside.
QString oneLine(const QString& text)
{
    constexpr qsizetype longest = 300;
    return text.simplified().left(longest);
}

} // namespace

Notification endNotification(const std::vector<GroupEnd>& ends, AppLanguage language)
{
    const Notification::Action show{Notification::clicked, pair(language, u"Show Vormel", u"Mostra Vormel")};
    if (ends.size() > 1)
        return {titleOf(ends, language), {}, u"transfer"_s, {show}};
    const GroupEnd& end = ends.front();
    const QString title = titleOf(end.kind, language);
    const Notification::Action showIt{showAction, pair(language, u"Show", u"Mostra")};
    if (end.isFailure())
        return {title, oneLine(end.name) + u'\n' + oneLine(end.message), u"transfer.error"_s, {show, showIt}};
    return {title,
            oneLine(end.name),
            u"transfer.complete"_s,
            {show, {openAction, pair(language, u"Open", u"Apri")}, showIt}};
}

} // namespace vormel

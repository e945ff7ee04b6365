#include "ui/queue/rows/LackText.h"

#include "ui/queue/rows/PartNumbers.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// More than these are counted.
constexpr std::size_t maxNamedFailures = 3;
constexpr std::size_t maxListed = 30;

QString ofTotal(const GroupLack& lack, AppLanguage language)
{
    return lack.highest == 0 ? QString() : pair(language, u" of %1", u" di %1").arg(lack.highest);
}

bool areFailuresNamed(const GroupLack& lack)
{
    return lack.failed.size() <= maxNamedFailures;
}

QString failedText(const GroupLack& lack, AppLanguage language)
{
    const qint64 count = partCount(lack.failed);
    if (count == 0)
        return {};
    if (!areFailuresNamed(lack))
        return pair(language, u"%1%2 parts failed", u"%1%2 parti fallite").arg(count).arg(ofTotal(lack, language));
    const QString text = count == 1 ? pair(language, u"Part %1%2 failed", u"Parte %1%2 fallita")
                                    : pair(language, u"Parts %1%2 failed", u"Parti %1%2 fallite");
    return text.arg(partNumbersText(lack.failed, language), ofTotal(lack, language));
}

QString missingText(const GroupLack& lack, AppLanguage language)
{
    const qint64 count = partCount(lack.missing);
    if (count == 0)
        return {};
    return (count == 1 ? pair(language, u"%1 part not in the list", u"%1 parte non nella lista")
                       : pair(language, u"%1 parts not in the list", u"%1 parti non nella lista"))
        .arg(count);
}

QString volumesText(const GroupLack& lack, AppLanguage language)
{
    return (lack.recoveryVolumes == 1 ? pair(language, u"%1 recovery volume", u"%1 volume di recupero")
                                      : pair(language, u"%1 recovery volumes", u"%1 volumi di recupero"))
        .arg(lack.recoveryVolumes);
}

QString enoughText(const GroupLack& lack, AppLanguage language)
{
    const QString can = lack.recoveryVolumes == 1 ? pair(language, u"can", u"può") : pair(language, u"can", u"possono");
    return (lack.parts() == 1 ? pair(language, u"%1 %2 rebuild it", u"%1 %2 ricostruirla")
                              : pair(language, u"%1 %2 rebuild them", u"%1 %2 ricostruirle"))
        .arg(volumesText(lack, language), can);
}

QString rescueText(const GroupLack& lack, AppLanguage language)
{
    switch (lack.rescue()) {
    case GroupLack::Rescue::none:
        return lack.parts() == 1 ? pair(language, u"nothing can rebuild it", u"nulla può ricostruirla")
                                 : pair(language, u"nothing can rebuild them", u"nulla può ricostruirle");
    case GroupLack::Rescue::tooFew: // than there are parts, which are two or more then
        return pair(language, u"only %1 for %2 parts", u"solo %1 per %2 parti")
            .arg(volumesText(lack, language))
            .arg(lack.parts());
    case GroupLack::Rescue::noFirst:
        return pair(language, u"nothing is rebuilt without the first part",
                    u"senza la prima parte non si ricostruisce nulla");
    case GroupLack::Rescue::enough:
        return enoughText(lack, language);
    }
    Q_UNREACHABLE();
}

QString listText(const std::vector<PartRange>& parts, AppLanguage language)
{
    if (parts.size() <= maxListed)
        return partNumbersText(parts, language);
    return partNumbersText({parts.begin(), parts.begin() + maxListed}, language) + u" …"_s;
}

} // namespace

QString lackText(const GroupLack& lack, AppLanguage language)
{
    if (lack.isNothing())
        return {};
    QStringList what{failedText(lack, language), missingText(lack, language)};
    what.removeAll(QString());
    if (!lack.failed.empty())
        return what.join(u", "_s) + u"; "_s + rescueText(lack, language);
    // What was only taken off the list may lie on disk.
    if (lack.rescue() == GroupLack::Rescue::enough)
        what << enoughText(lack, language);
    return what.join(u", "_s);
}

QString lackDetail(const GroupLack& lack, AppLanguage language)
{
    QStringList lines;
    if (!areFailuresNamed(lack))
        lines << pair(language, u"Failed: ", u"Fallite: ") + listText(lack.failed, language);
    if (!lack.missing.empty())
        lines << pair(language, u"Not in the list: ", u"Non nella lista: ") + listText(lack.missing, language);
    return lines.join(u'\n');
}

} // namespace vormel

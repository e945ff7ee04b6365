#include "ui/queue/rows/PartNumbers.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace vormel {

QString partNumbersText(const std::vector<PartRange>& parts, AppLanguage language)
{
    QStringList words;
    for (const PartRange& range : parts) {
        words << QString::number(range.first);
        if (range.last == range.first + 1)
            words << QString::number(range.last);
        else if (range.last > range.first)
            words.back() += u'–' + QString::number(range.last);
    }
    if (words.size() < 2)
        return words.join(QString());
    const QString last = words.takeLast();
    return words.join(u", "_s) + pair(language, u" and ", u" e ") + last;
}

} // namespace vormel

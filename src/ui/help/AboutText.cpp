#include "ui/help/AboutText.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace vormel {

QString surroundingsText(const Surroundings& surroundings, AppLanguage language)
{
    const QString missing = pair(language, u"not installed", u"non installato");
    QStringList lines;
    const auto add = [&lines](const QString& name, const QString& value) { lines << u"%1: %2"_s.arg(name, value); };
    add(pair(language, u"System", u"Sistema"), surroundings.system);
    add(u"Qt"_s, surroundings.qt);
    add(u"libcurl"_s, surroundings.curl);
    add(pair(language, u"Web engine", u"Motore web"),
        surroundings.hasWebEngine ? pair(language, u"installed", u"installato") : missing);
    for (const ToolPlace& tool : surroundings.tools)
        add(tool.name, tool.path.value_or(missing));
    return lines.join(u'\n');
}

} // namespace vormel

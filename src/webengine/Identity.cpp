#include "webengine/Identity.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

QString ordinaryUserAgent(const QString& ofEngine)
{
    QString name = ofEngine;
    name.remove(QRegularExpression(uR"(QtWebEngine/\S*\s*)"_s));
    name.replace(QRegularExpression(uR"((Chrome/\d+)[\d.]*)"_s), u"\\1.0.0.0"_s);
    return name;
}

QString acceptLanguage(const QStringList& languages)
{
    constexpr int tenths = 10;
    QStringList rated;
    for (const QString& language : languages) {
        const auto place = static_cast<int>(rated.size());
        const int quality = std::max(1, tenths - place);
        rated.append(place == 0 ? language : u"%1;q=0.%2"_s.arg(language).arg(quality));
    }
    return rated.join(u',');
}

} // namespace vormel

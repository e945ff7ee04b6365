#include "webengine/BoundedScript.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// As a literal of the script language.
QString quoted(const QString& text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

} // namespace

QString boundedScript(const QString& script)
{
    // The engine lets a world of our own evaluate text whatever the page's policy says.
    return uR"((() => {
    if (location.protocol === 'chrome-error:')
        return undefined;
    let left = 4 * 1024 * 1024;
    const bounded = value => {
        if (typeof value === 'string') {
            const text = value.slice(0, left);
            left -= text.length;
            return text;
        }
        if (Array.isArray(value)) {
            const some = value.slice(0, left);
            left -= some.length;
            return some.map(bounded);
        }
        if (value && Object.getPrototypeOf(value) === Object.prototype)
            return Object.fromEntries(bounded(Object.entries(value)));
        return value;
    };
    return bounded((0, eval)(%1));
})())"_s.arg(quoted(script));
}

} // namespace vormel

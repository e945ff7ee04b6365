#include "ToldPatterns.h"

#include "text/LinkReference.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace vormel::told {

namespace {

QRegularExpression pattern(const QString& text)
{
    QRegularExpression expression(text, QRegularExpression::CaseInsensitiveOption |
                                            QRegularExpression::UseUnicodePropertiesOption);
    Q_ASSERT(expression.isValid());
    return expression;
}

QString first(const QString& text, const QRegularExpression& expression)
{
    return expression.match(text).captured(1);
}

} // namespace

std::optional<DirectLink> extractDirectLink(const QString& html, const Link& pageUrl, const QString& domain)
{
    static const QString site = QString(domain).replace(u'.', u"\\."_s);
    static const std::vector<QRegularExpression> kinds{
        pattern(u"href=\"(https?://[^\"]*"_s + site + u"/dl/[^\"]+)\""_s),
        pattern(u"href=\"(https?://[^\"]*"_s + site + u"/d/[^\"]+)\""_s),
        pattern(u"href=\"(https?://[^\"]+\\.(?:zip|rar|7z|mkv|mp4|avi|mov|pdf|iso|tar|gz)[^\"]*)\""_s),
        pattern(u"data-url=\"([^\"]+)\""_s),
        pattern(u"location\\.href=['\"]([^'\"]+filestore[^'\"]+)['\"]"_s),
    };
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const std::optional<Link> link = httpTarget(pageUrl, first(html, kinds[i]));
        if (link && link->absoluteString().section(u'#', 0, 0) != pageUrl.absoluteString().section(u'#', 0, 0))
            return DirectLink{*link, i};
    }
    return std::nullopt;
}

QString extractTitleName(const QString& html)
{
    static const std::vector<QRegularExpression> places{pattern(u"<h1[^>]*>([^<]+)</h1>"_s),
                                                        pattern(u"<title>([^<|]+)"_s)};
    for (const QRegularExpression& place : places) {
        const QString text = first(html, place).trimmed();
        if (!text.isEmpty() && !text.toLower().contains(u"filestore"_s))
            return told::normalizeTitleName(text);
    }
    return {};
}

QString normalizeTitleName(QString text)
{
    static const QRegularExpression command = pattern(u"^Download\\s+"_s);
    static const QRegularExpression volume = pattern(u"\\s+part(\\d+)\\s+(rar|rev)$"_s);
    const QRegularExpressionMatch download = command.match(text);
    if (download.hasMatch())
        text.remove(download.capturedStart(), download.capturedLength());
    const QRegularExpressionMatch part = volume.match(text);
    if (part.hasMatch())
        text.replace(part.capturedStart(), part.capturedLength(),
                     u".part"_s + part.captured(1) + u'.' + part.captured(2).toLower());
    return text;
}

FormFields parseHiddenInputs(const QString& html)
{
    static const QRegularExpression tag = pattern(u"(?s)<input[^>]*type=[\"']hidden[\"'][^>]*>"_s);
    static const QRegularExpression name = pattern(u"name=['\"]([^'\"]*)['\"]"_s);
    static const QRegularExpression value = pattern(u"value=['\"]([^'\"]*)['\"]"_s);
    FormFields fields;
    for (const QRegularExpressionMatch& match : tag.globalMatch(html)) {
        const QString input = match.captured();
        if (name.match(input).hasMatch() && value.match(input).hasMatch())
            setField(fields, first(input, name), first(input, value));
    }
    return fields;
}

std::optional<DownloadForm> findDownloadForm(const QString& html, const Link& baseUrl)
{
    static const QRegularExpression whole = pattern(u"<form\\b([^>]*)>([\\s\\S]*?)</form>"_s);
    static const QRegularExpression action = pattern(u"action=['\"]([^'\"]*)['\"]"_s);
    std::optional<DownloadForm> fallback;
    for (const QRegularExpressionMatch& match : whole.globalMatch(html)) {
        const DownloadForm form{resolveFormAction(first(match.captured(1), action), baseUrl),
                                told::parseHiddenInputs(match.captured(2))};
        const QString* const operation = fieldValue(form.fields, u"op");
        if (operation && operation->toLower().contains(u"download"_s))
            return form;
        if (!fallback && (fieldValue(form.fields, u"id") || fieldValue(form.fields, u"rand")))
            fallback = form;
    }
    return fallback;
}

} // namespace vormel::told

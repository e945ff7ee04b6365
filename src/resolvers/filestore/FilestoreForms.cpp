#include "resolvers/filestore/FilestoreForms.h"

#include "text/LinkReference.h"
#include "text/QuotedValues.h"
#include "text/SmallLetters.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr QStringView formQuotes = u"'\"";

/// What stands between the tags, and what stands in the first of them.
struct FormText
{
    QStringView attributes;
    QStringView body;
    qsizetype end = 0; ///< of the whole form in its page
};

/// The first value of that attribute, or of another whose name ends like it.
std::optional<QStringView> attributeIn(QStringView attributes, QStringView lead)
{
    return QuotedValues(attributes, lead, formQuotes).next();
}

bool isHiddenInput(QStringView attributes)
{
    QuotedValues types(attributes, u"type=", formQuotes);
    std::optional<QStringView> type = types.next();
    while (type && type->compare(u"hidden", Qt::CaseInsensitive) != 0)
        type = types.next();
    return type.has_value();
}

bool goesOnAsWord(QStringView text, qsizetype at)
{
    if (at == text.size())
        return false;
    const bool isPair = at + 1 < text.size() && text[at].isHighSurrogate() && text[at + 1].isLowSurrogate();
    const char32_t letter = isPair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
    return letter == U'_' || QChar::isLetterOrNumber(letter);
}

/// The place behind the next "<form" that is no longer word; -1 without one.
qsizetype behindFormName(QStringView html, qsizetype from)
{
    constexpr QStringView name = u"<form";
    while ((from = html.indexOf(name, from, Qt::CaseInsensitive)) >= 0) {
        from += name.size();
        if (!goesOnAsWord(html, from))
            break;
    }
    return from;
}

/// What <form\b([^>]*)>([\s\S]*?)</form> matches there or further on.
std::optional<FormText> nextForm(QStringView html, qsizetype from)
{
    constexpr QStringView closing = u"</form>";
    const qsizetype start = behindFormName(html, from);
    const qsizetype tagEnd = start < 0 ? -1 : html.indexOf(u'>', start);
    const qsizetype bodyEnd = tagEnd < 0 ? -1 : html.indexOf(closing, tagEnd + 1, Qt::CaseInsensitive);
    // What this form lacks, one that begins further on lacks, too.
    if (bodyEnd < 0)
        return std::nullopt;
    return FormText{html.mid(start, tagEnd - start), html.mid(tagEnd + 1, bodyEnd - tagEnd - 1),
                    bodyEnd + closing.size()};
}

DownloadForm formOf(const FormText& text, FormFields fields, const Link& baseUrl)
{
    const QString action = attributeIn(text.attributes, u"action=").value_or(QStringView()).toString();
    return {resolveFormAction(action, baseUrl), std::move(fields)};
}

} // namespace

FormFields parseHiddenInputs(QStringView html)
{
    constexpr QStringView opening = u"<input";
    FormFields fields;
    QHash<QStringView, std::size_t> places; // pages may have thousands
    qsizetype at = 0;
    while ((at = html.indexOf(opening, at, Qt::CaseInsensitive)) >= 0) {
        const qsizetype start = at + opening.size();
        at = html.indexOf(u'>', start);
        if (at < 0)
            break;
        const QStringView attributes = html.mid(start, at - start);
        const auto name = attributeIn(attributes, u"name=");
        const auto value = attributeIn(attributes, u"value=");
        if (!name || !value || !isHiddenInput(attributes))
            continue;
        const std::size_t place = places.value(*name, fields.size());
        if (place == fields.size()) {
            places.insert(*name, place);
            fields.emplace_back(name->toString(), QString());
        }
        fields[place].second = value->toString();
    }
    return fields;
}

std::optional<DownloadForm> findDownloadForm(const QString& html, const Link& baseUrl)
{
    std::optional<DownloadForm> fallback;
    qsizetype at = 0;
    while (const std::optional<FormText> form = nextForm(html, at)) {
        at = form->end;
        FormFields fields = parseHiddenInputs(form->body);
        const QString* const operation = fieldValue(fields, u"op");
        if (operation && withSmallLetters(*operation).contains("download"_L1))
            return formOf(*form, std::move(fields), baseUrl);
        if (!fallback && (fieldValue(fields, u"id") || fieldValue(fields, u"rand")))
            fallback = formOf(*form, std::move(fields), baseUrl);
    }
    return fallback;
}

Link resolveFormAction(const QString& action, const Link& baseUrl)
{
    if (action.isEmpty() || action == "#"_L1)
        return baseUrl;
    if (action.startsWith("http"_L1) && !Link::parse(action))
        return baseUrl;
    return httpTarget(baseUrl, action).value_or(baseUrl);
}

void applyPremiumFields(FormFields& fields)
{
    const QString premium = u"method_premium"_s;
    const bool hasChoice = fieldValue(fields, u"method_free") ||
                           std::any_of(fields.begin(), fields.end(),
                                       [&premium](const auto& field) { return field.first.startsWith(premium); });
    const QString* const operation = fieldValue(fields, u"op");
    if (!hasChoice && (!operation || withSmallLetters(*operation) != "download1"_L1))
        return;
    if (!hasChoice)
        setField(fields, u"op"_s, u"download2"_s);
    removeField(fields, u"method_free");
    setField(fields, premium, u"1"_s);
}

} // namespace vormel

#include "app/update/Appcast.h"

#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// One item as it is written, before anything is made of it.
struct RawItem
{
    QString title;
    QString link;
    QString shortVersion;
    QString version;
};

void take(QString& value, const QString& text)
{
    if (value.isEmpty())
        value = text.trimmed();
}

void readField(QXmlStreamReader& reader, RawItem& item)
{
    const QStringView name = reader.qualifiedName();
    QString* const field = name == u"title"                        ? &item.title
                           : name == u"link"                       ? &item.link
                           : name == u"sparkle:shortVersionString" ? &item.shortVersion
                           : name == u"sparkle:version"            ? &item.version
                                                                   : nullptr;
    if (field) {
        take(*field, reader.readElementText(QXmlStreamReader::SkipChildElements));
        return;
    }
    if (name == u"enclosure") {
        take(item.shortVersion, reader.attributes().value(u"sparkle:shortVersionString"_s).toString());
        take(item.version, reader.attributes().value(u"sparkle:version"_s).toString());
    }
    reader.skipCurrentElement();
}

std::optional<AppcastItem> understood(const RawItem& item)
{
    const QString titleWord = item.title.section(u' ', -1);
    for (const QString& text : {item.shortVersion, item.version, titleWord}) {
        const QUrl page(item.link, QUrl::StrictMode);
        std::optional<Version> version = Version::parse(text);
        if (version && page.scheme() == u"https" && !page.host().isEmpty())
            return AppcastItem{std::move(*version), page};
    }
    return std::nullopt;
}

std::optional<AppcastItem> readItem(QXmlStreamReader& reader)
{
    RawItem item;
    while (reader.readNextStartElement())
        readField(reader, item);
    return understood(item);
}

/// The feed's elements may be nested as they like; only its items count.
void readItems(QXmlStreamReader& reader, Appcast& appcast)
{
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::DTD) {
            reader.raiseError(u"a document type of its own"_s);
        } else if (token == QXmlStreamReader::StartElement && reader.qualifiedName() == u"item") {
            std::optional<AppcastItem> item = readItem(reader);
            if (item && (!appcast.newest || item->version > appcast.newest->version))
                appcast.newest = std::move(item);
        }
    }
}

} // namespace

std::optional<Appcast> readAppcast(const QByteArray& document)
{
    QXmlStreamReader reader(document);
    reader.setNamespaceProcessing(false); // prefixes are taken by their usual names, declared or not
    Appcast appcast;
    bool isRss = false;
    while (!isRss && !reader.atEnd() && reader.readNext() != QXmlStreamReader::DTD)
        isRss = reader.isStartElement() && reader.qualifiedName() == u"rss";
    if (!isRss)
        return std::nullopt;
    readItems(reader, appcast);
    if (reader.hasError())
        return std::nullopt;
    return appcast;
}

} // namespace vormel

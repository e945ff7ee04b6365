#include "engine/transfer/SourceMark.h"

#include "text/PercentCoding.h"

namespace vormel {

namespace {

constexpr QStringView weakPrefix = u"W/";

QString markIn(const HttpResponse& response, QByteArrayView name)
{
    constexpr qsizetype maxLength = 256;
    return lenientText(response.header(name).value_or(QByteArray()).left(maxLength));
}

QStringView opaque(QStringView etag)
{
    return etag.startsWith(weakPrefix) ? etag.sliced(weakPrefix.size()) : etag;
}

bool differ(QStringView a, QStringView b)
{
    return !a.isEmpty() && !b.isEmpty() && a != b;
}

const QString& firstFilled(const QString& a, const QString& b)
{
    return a.isEmpty() ? b : a;
}

} // namespace

QString SourceMark::toText() const
{
    return host + u'\n' + etag + u'\n' + lastModified + u'\n' + coding;
}

SourceMark SourceMark::fromText(const QString& text)
{
    const QStringList lines = text.split(u'\n');
    SourceMark mark{lines.value(0), lines.value(1), lines.value(2), lines.value(3)};
    // The one mark of earlier versions: no date begins with a quote.
    if (lines.size() == 2 && !mark.etag.startsWith(u'"'))
        std::swap(mark.etag, mark.lastModified);
    return mark;
}

SourceMark SourceMark::filledUpFrom(const SourceMark& later) const
{
    if (host.isEmpty())
        return later;
    if (host != later.host)
        return *this;
    return {host, firstFilled(etag, later.etag), firstFilled(lastModified, later.lastModified), coding};
}

SourceMark sourceMarkOf(const HttpResponse& response)
{
    QString coding = markIn(response, "Content-Encoding").toLower();
    if (coding == u"identity")
        coding.clear();
    return {response.url.host(), markIn(response, "ETag"), markIn(response, "Last-Modified"), coding};
}

bool isOtherVersion(const SourceMark& known, const SourceMark& now)
{
    if (known.host != now.host)
        return false;
    const bool isStrong = !known.etag.isEmpty() && !known.etag.startsWith(weakPrefix);
    if (isStrong && known.etag == now.etag)
        return false;
    return differ(opaque(known.etag), opaque(now.etag)) || differ(known.lastModified, now.lastModified);
}

} // namespace vormel

#include "model/ReleaseName.h"

#include "text/BoundedRegex.h"
#include "text/FileName.h"

#include <array>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr std::array releaseTagPatterns{
    u"2160p",  u"1080p",    u"720p",  u"480p",     u"540p",      u"web[- ]?dl", u"web[- ]?rip", u"bluray", u"blu-ray",
    u"bdrip",  u"brrip",    u"hdtv",  u"dvdrip",   u"hdrip",     u"remux",      u"x ?264",      u"x ?265", u"h ?264",
    u"h ?265", u"hevc",     u"avc",   u"xvid",     u"hdr10\\+?", u"hdr",        u"dovi",        u"dv",     u"10 ?bit",
    u"8 ?bit", u"aac",      u"ac3",   u"e-?ac-?3", u"ddp?5?",    u"dts(-hd)?",  u"flac",        u"atmos",  u"truehd",
    u"multi",  u"multisub", u"subs?", u"ita",      u"eng",       u"vostfr",     u"vf",          u"repack", u"proper",
    u"imax",   u"amzn",     u"nf",    u"dsnp",     u"atvp",      u"hmax",
};

bool isSeparator(QChar c)
{
    return c == u' ' || c == u'.' || c == u'_' || c == u'-';
}

QString withoutSeparatorsAround(QStringView text)
{
    while (!text.isEmpty() && isSeparator(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isSeparator(text.back()))
        text.chop(1);
    return text.toString();
}

BoundedRegex tagPattern()
{
    QStringList tags;
    for (const char16_t* tag : releaseTagPatterns)
        tags << QString::fromUtf16(tag);
    return BoundedRegex(u"[._ -](?:"_s + tags.join(u'|') + u")(?:[._ -]|$)"_s,
                        QRegularExpression::CaseInsensitiveOption);
}

QString withBlanks(QString stem)
{
    stem.replace(u'.', u' ').replace(u'_', u' ');
    QString single;
    single.reserve(stem.size());
    for (const QChar c : std::as_const(stem))
        if (c != u' ' || !single.endsWith(u' '))
            single.append(c);
    return single.trimmed();
}

} // namespace

QString stripReleaseTags(const QString& stem)
{
    static const BoundedRegex tag = tagPattern();
    const BoundedRegex::Result found = tag.search(stem);
    return found ? withoutSeparatorsAround(QStringView(stem).left(found.match.capturedStart())) : stem;
}

QString cleanedName(const QString& name, bool clean, bool dotsToSpaces)
{
    const QString extension = pathExtension(name);
    QString stem = withoutPathExtension(name);
    if (clean)
        stem = stripReleaseTags(stem);
    if (dotsToSpaces)
        stem = withBlanks(stem);
    stem = withoutSeparatorsAround(stem);
    if (stem.isEmpty())
        return name;
    return extension.isEmpty() ? stem : stem + u'.' + extension;
}

} // namespace vormel

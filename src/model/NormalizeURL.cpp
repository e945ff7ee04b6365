#include "model/NormalizeURL.h"

#include "text/PercentCoding.h"

namespace vormel {

namespace {

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool isEscape(QStringView text)
{
    return text[0] == u'%' && isHexDigit(text[1]) && isHexDigit(text[2]);
}

/// How much of the encoded path its last decoded character takes: one character, or the escapes of one.
qsizetype lastCharacterLength(QStringView path)
{
    constexpr qsizetype escape = 3;
    if (path.size() < escape || !isEscape(path.last(escape)))
        return path.back().isLowSurrogate() && path.size() > 1 ? 2 : 1;
    // UTF-8 takes up to four escapes for one character; the shortest tail that decodes is that character.
    for (qsizetype length = escape; length <= 4 * escape && length <= path.size(); length += escape) {
        if (!isEscape(path.last(length).first(escape)))
            break;
        if (percentDecoded(path.last(length)))
            return length;
    }
    return escape;
}

bool mayEndPath(QStringView lastCharacter)
{
    const QString decoded = percentDecoded(lastCharacter).value_or(QString());
    if (decoded.isEmpty())
        return false;
    const auto codePoints = decoded.toUcs4();
    return QChar::isLetterOrNumber(codePoints.back()) || QChar::isMark(codePoints.back()) || decoded.back() == u'/';
}

} // namespace

Link normalizeURL(const Link& url)
{
    QStringView path = url.encodedPath();
    // Most links end in a plain letter or digit.
    if (!path.isEmpty() && path.back().unicode() < 0x80 && path.back().isLetterOrNumber() && !path.contains(u'%'))
        return url;
    while (!path.isEmpty()) {
        const qsizetype length = lastCharacterLength(path);
        if (mayEndPath(path.last(length)))
            break;
        path.chop(length);
    }
    return path.size() == url.encodedPath().size() ? url : url.withEncodedPath(path);
}

} // namespace vormel

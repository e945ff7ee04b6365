#include "archive/workspace/ReadableName.h"

#include "text/FileName.h"

#include <QStringDecoder>

#include <algorithm>
#include <string_view>

namespace vormel {

namespace {

constexpr int asciiSize = 0x80;

/// What the bytes from 0x80 stand for.
using CodePage = std::u16string_view;

constexpr CodePage dos437 = u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»"
                            u"░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
                            u"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00a0";
/// Up to where Latin-1 begins; "?" where there is nothing.
constexpr CodePage windows1252 = u"€?‚ƒ„…†‡ˆ‰Š‹Œ?Ž??‘’“”•–—˜™š›œ?žŸ";
static_assert(dos437.size() == asciiSize && windows1252.size() == asciiSize / 4);

QString decoded(const QByteArray& bytes, CodePage page)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar& c : text) {
        const char16_t code = c.unicode();
        if (code >= asciiSize && code < asciiSize + page.size())
            c = QChar(page[code - asciiSize]);
    }
    return text;
}

bool readsWell(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return c.unicode() < asciiSize || (c.script() == QChar::Script_Latin && (c.isLower() || c.isUpper()));
    });
}

QString decodedByGuess(const QByteArray& name)
{
    QString text = decoded(name, dos437);
    if (readsWell(text))
        return text;
    const QString other = decoded(name, windows1252);
    return readsWell(other) ? other : text;
}

} // namespace

QString readableName(const QByteArray& name)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(name);
    return decoder.hasError() ? safeFileName(decodedByGuess(name)) : text;
}

} // namespace vormel

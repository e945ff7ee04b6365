#include "text/Link.h"

#include "text/PercentCoding.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vormel {

namespace {

constexpr qsizetype maxLinkLength = 65536;

bool isAsciiLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// Which characters may stand as they are behind the host. Brackets are not quite legal there, but common and harmless.
constexpr std::array<bool, 128> addressCharacters = [] {
    std::array<bool, 128> table{};
    for (const char c : std::string_view("0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                         "-._~!$&'()*+,;=:@/?#[]%"))
        table[static_cast<unsigned char>(c)] = true;
    return table;
}();

bool isAddressCharacter(QChar c)
{
    return c.unicode() < addressCharacters.size() && addressCharacters[c.unicode()];
}

bool isSchemeText(QStringView text)
{
    if (text.isEmpty() || !isAsciiLetter(text.front()))
        return false;
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return isAsciiLetter(c) || isAsciiDigit(c) || c == u'+' || c == u'-' || c == u'.';
    });
}

bool isPlainHost(QStringView host)
{
    return std::all_of(host.begin(), host.end(), [](QChar c) {
        return isAsciiLetter(c) || isAsciiDigit(c) || c == u'-' || c == u'.' || c == u'_';
    });
}

qsizetype firstOf(QStringView text, QStringView characters, qsizetype from)
{
    const auto found = std::find_first_of(text.begin() + from, text.end(), characters.begin(), characters.end());
    return found - text.begin();
}

QString encodedBehind(QStringView text, qsizetype authorityEnd)
{
    // Nearly every link is legal as it stands, and queues are long.
    if (std::all_of(text.begin() + authorityEnd, text.end(), isAddressCharacter))
        return text.toString();
    QString result = text.left(authorityEnd).toString();
    result.reserve(text.size() + 16);
    for (qsizetype i = authorityEnd; i < text.size(); ++i) {
        if (isAddressCharacter(text[i])) {
            result += text[i];
            continue;
        }
        const qsizetype length = text[i].isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        const QByteArray encoded = text.mid(i, length).toUtf8().toPercentEncoding();
        result += QLatin1StringView{encoded};
        i += length - 1;
    }
    return result;
}

bool isUsablePort(QStringView port)
{
    if (!std::all_of(port.begin(), port.end(), isAsciiDigit))
        return false;
    bool isNumber = port.isEmpty();
    const uint value = isNumber ? 0 : port.toUInt(&isNumber);
    return isNumber && value <= 65535;
}

} // namespace

std::optional<Link> Link::parse(QStringView text)
{
    text = text.trimmed();
    const qsizetype colon = text.indexOf(u':');
    if (colon < 1 || text.size() > maxLinkLength || !isSchemeText(text.left(colon)))
        return std::nullopt;
    const bool hasAuthority = text.mid(colon + 1).startsWith(u"//");
    const qsizetype authorityEnd = hasAuthority ? firstOf(text, u"/?#", colon + 3) : colon + 1;
    std::optional<Link> link = split(encodedBehind(text, authorityEnd));
    // A host beyond plain letters and digits is left to the judgement of the library that will look it up.
    if (link && !isPlainHost(link->host()) && !link->toUrl().isValid())
        return std::nullopt;
    return link;
}

std::optional<Link> Link::split(QString text)
{
    Link link;
    link.m_text = std::move(text);
    const QStringView view{link.m_text};
    const qsizetype colon = view.indexOf(u':');
    link.m_schemeLength = static_cast<qint32>(colon);
    qsizetype at = colon + 1;
    if (view.mid(at).startsWith(u"//")) {
        at += 2;
        const qsizetype end = firstOf(view, u"/?#", at);
        if (!link.takeHost(at, end))
            return std::nullopt;
        at = end;
    }
    const qsizetype pathEnd = firstOf(view, u"?#", at);
    link.m_path = {static_cast<qint32>(at), static_cast<qint32>(pathEnd - at)};
    return link;
}

bool Link::takeHost(qsizetype at, qsizetype end)
{
    const QStringView authority = QStringView{m_text}.mid(at, end - at);
    const qsizetype user = authority.lastIndexOf(u'@') + 1;
    const QStringView hostAndPort = authority.mid(user);
    const bool isBracketed = hostAndPort.startsWith(u'[');
    const qsizetype bracket = isBracketed ? hostAndPort.indexOf(u']') : 0;
    // Brackets hold an IPv6 address, which cannot do without a colon.
    if (isBracketed && !hostAndPort.first(std::max<qsizetype>(bracket, 0)).contains(u':'))
        return false;
    const qsizetype portColon = hostAndPort.indexOf(u':', bracket);
    if (portColon >= 0 && !isUsablePort(hostAndPort.mid(portColon + 1)))
        return false;
    const qsizetype start = isBracketed ? 1 : 0;
    const qsizetype hostEnd = isBracketed ? bracket : portColon < 0 ? hostAndPort.size() : portColon;
    m_host = {static_cast<qint32>(at + user + start), static_cast<qint32>(hostEnd - start)};
    return true;
}

QString Link::scheme() const
{
    return QStringView{m_text}.left(m_schemeLength).toString().toLower();
}

bool Link::isHttp() const
{
    const QStringView scheme = QStringView{m_text}.left(m_schemeLength);
    return scheme.compare(u"http", Qt::CaseInsensitive) == 0 || scheme.compare(u"https", Qt::CaseInsensitive) == 0;
}

QStringView Link::host() const
{
    return piece(m_host);
}

QStringView Link::encodedPath() const
{
    return piece(m_path);
}

QString Link::path() const
{
    return percentDecoded(encodedPath()).value_or(encodedPath().toString());
}

Link Link::withEncodedPath(QStringView path) const
{
    const QStringView view{m_text};
    const QStringView tail = view.mid(m_path.start + m_path.length);
    return split(view.left(m_path.start).toString() + path.toString() + tail.toString()).value_or(*this);
}

QString Link::lastPathComponent() const
{
    const QString whole = path();
    qsizetype end = whole.size();
    while (end > 0 && whole[end - 1] == u'/')
        --end;
    const qsizetype slash = end == 0 ? -1 : whole.lastIndexOf(u'/', end - 1);
    return whole.mid(slash + 1, end - slash - 1);
}

QUrl Link::toUrl() const
{
    return QUrl(m_text, QUrl::TolerantMode);
}

} // namespace vormel

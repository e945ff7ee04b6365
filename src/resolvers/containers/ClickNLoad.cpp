#include "resolvers/containers/ClickNLoad.h"

#include "resolvers/containers/CnlCipher.h"
#include "text/BoundedRegex.h"
#include "text/Hex.h"
#include "text/Newline.h"
#include "text/PercentCoding.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool isTrimmed(QChar letter)
{
    return letter.isSpace() || letter.isNull();
}

/// Whole groups of four only, as strictly as the key is read.
std::optional<QByteArray> bytesFromBase64(const QString& text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    const auto decoded = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional(decoded.decoded) : std::nullopt;
}

std::optional<QString> decryptedText(const CNLPair& pair)
{
    const std::optional<QByteArray> key = bytesFromHex(pair.keyHex);
    const std::optional<QByteArray> cipher = bytesFromBase64(pair.cipherBase64);
    const std::optional<QByteArray> plain = key && cipher ? decryptedCNL(*cipher, *key) : std::nullopt;
    return plain ? strictUtf8(*plain) : std::nullopt;
}

void appendLinesTo(std::vector<Link>& links, QStringView text)
{
    for (auto begin = text.begin(); begin != text.end();) {
        const auto end = std::find_if(begin, text.end(), isNewline);
        if (const std::optional<Link> link = normalizeCNLLine(QStringView(begin, end)))
            links.push_back(*link);
        begin = end == text.end() ? end : end + 1;
    }
}

} // namespace

std::vector<CNLPair> findCNLPairs(const QString& html)
{
    static const BoundedRegex call(uR"(CNLPOP\s*\(\s*'[^']*'\s*,\s*'([0-9A-Fa-f]+)'\s*,\s*'([A-Za-z0-9+/=]+)')"_s);
    std::vector<CNLPair> pairs;
    for (const QRegularExpressionMatch& match : call.all(html))
        pairs.push_back({match.captured(1), match.captured(2)});
    return pairs;
}

std::vector<Link> decodeCNLLinks(const QString& html)
{
    std::vector<Link> links;
    for (const CNLPair& pair : findCNLPairs(html))
        appendLinesTo(links, decryptedText(pair).value_or(QString()));
    return links;
}

std::optional<Link> normalizeCNLLine(QStringView line)
{
    while (!line.isEmpty() && isTrimmed(line.front()))
        line = line.sliced(1);
    while (!line.isEmpty() && isTrimmed(line.back()))
        line.chop(1);
    while (line.endsWith(u'&') || line.endsWith(u'?'))
        line.chop(1);
    const std::optional<Link> link = Link::parse(line);
    return link && link->isHttp() && !link->host().isEmpty() ? link : std::nullopt;
}

} // namespace vormel

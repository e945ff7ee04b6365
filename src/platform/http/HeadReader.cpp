#include "platform/http/HeadReader.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The number of a status line such as "HTTP/1.1 200 OK" or "HTTP/2 200"; 0 for anything else.
int statusOf(QByteArrayView line)
{
    constexpr QByteArrayView prefix = "HTTP/";
    const qsizetype blank = line.indexOf(' ');
    if (!line.startsWith(prefix) || blank < 0)
        return 0;
    const QByteArrayView version = line.sliced(prefix.size(), blank - prefix.size());
    const bool isVersion = (version.size() == 1 && isDigit(version[0])) ||
                           (version.size() == 3 && isDigit(version[0]) && version[1] == '.' && isDigit(version[2]));
    const QByteArrayView rest = line.sliced(blank).trimmed();
    const QByteArrayView number = rest.first(std::max<qsizetype>(rest.indexOf(' '), 0));
    const QByteArrayView status = number.isEmpty() ? rest : number;
    if (!isVersion || status.size() != 3 || !std::all_of(status.begin(), status.end(), isDigit))
        return 0;
    return status.toByteArray().toInt();
}

/// Do all lengths that are told say one number? Digits without end are one too, only too large to be used.
bool isOneLength(const std::vector<QByteArray>& values)
{
    std::optional<QByteArray> told;
    for (const QByteArray& value : values) {
        for (const QByteArray& entry : value.split(',')) {
            const QByteArray length = entry.trimmed();
            if (length.isEmpty() || !std::all_of(length.begin(), length.end(), isDigit) || (told && *told != length))
                return false;
            told = length;
        }
    }
    return true;
}

} // namespace

HeadReader::Step HeadReader::take(QByteArrayView line)
{
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    if (!m_isInHead)
        return takeStatusLine(line);
    if (line.isEmpty())
        return takeEnd();
    return line.front() == ' ' || line.front() == '\t' ? takeFold(line.trimmed()) : takeField(line);
}

HeadReader::Step HeadReader::takeStatusLine(QByteArrayView line)
{
    constexpr int minStatus = 100;
    m_response.headers.clear();
    m_response.statusCode = statusOf(line);
    if (m_response.statusCode < minStatus)
        return complain(u"a status line that is none"_s);
    m_isInHead = true;
    m_isFoldable = false;
    return Step::more;
}

HeadReader::Step HeadReader::takeField(QByteArrayView line)
{
    const qsizetype colon = line.indexOf(':');
    m_isFoldable = colon > 0;
    if (m_isFoldable)
        m_response.headers.push_back(
            {line.first(colon).trimmed().toByteArray(), line.sliced(colon + 1).trimmed().toByteArray()});
    return Step::more;
}

HeadReader::Step HeadReader::takeFold(QByteArrayView line)
{
    // A line that goes on with nothing could smuggle a field past one of two readers.
    if (m_response.headers.empty())
        return complain(u"a folded line before every field"_s);
    if (!m_isFoldable)
        return Step::more;
    QByteArray& value = m_response.headers.back().value;
    if (!value.isEmpty() && !line.isEmpty())
        value += ' ';
    value += line;
    return Step::more;
}

HeadReader::Step HeadReader::takeEnd()
{
    constexpr int firstFinal = 200;
    m_isInHead = false;
    if (m_response.statusCode < firstFinal)
        return Step::more;
    if (!m_response.header("Transfer-Encoding") && !isOneLength(m_response.values("Content-Length")))
        return complain(u"a length that is no number, or two of them"_s);
    return Step::complete;
}

HeadReader::Step HeadReader::complain(QString why)
{
    m_complaint = std::move(why);
    return Step::nonsense;
}

} // namespace vormel

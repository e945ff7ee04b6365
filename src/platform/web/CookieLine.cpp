#include "platform/web/CookieLine.h"

#include <QByteArrayList>

#include <algorithm>

namespace vormel {

namespace {

const QByteArray httpAlone = "#HttpOnly_";
constexpr qsizetype fieldCount = 7;

QByteArray flag(bool isSet)
{
    return isSet ? "TRUE" : "FALSE";
}

bool isHarmlessInHeader(const QByteArray& text)
{
    constexpr auto firstPrintable = ' ';
    return std::ranges::none_of(
        text, [](char c) { return c == ';' || (static_cast<unsigned char>(c) < firstPrintable) || c == '\x7f'; });
}

QByteArray domainAs(const QByteArray& domain, bool isShared)
{
    const QByteArray bare = domain.startsWith('.') ? domain.mid(1) : domain;
    return isShared && !bare.isEmpty() ? '.' + bare : bare;
}

} // namespace

std::optional<CookieLine> CookieLine::parse(const QByteArray& line)
{
    const QByteArrayList fields = line.split('\t');
    if (fields.size() != fieldCount || !std::ranges::all_of(fields, isHarmlessInHeader))
        return std::nullopt;
    const bool isForHttpAlone = fields[0].startsWith(httpAlone);
    const QByteArray domain = isForHttpAlone ? fields[0].mid(httpAlone.size()) : fields[0];
    bool isNumber = false;
    CookieLine cookie{.domain = domainAs(domain, fields[1] == "TRUE"),
                      .path = fields[2],
                      .isSecure = fields[3] == "TRUE",
                      .isForHttpAlone = isForHttpAlone,
                      .expiry = fields[4].toLongLong(&isNumber),
                      .name = fields[5],
                      .value = fields[6]};
    if (!isNumber || cookie.domain.isEmpty() || cookie.name.isEmpty() || !cookie.path.startsWith('/'))
        return std::nullopt;
    return cookie;
}

QByteArray CookieLine::text() const
{
    const QByteArrayList fields{isForHttpAlone ? httpAlone + domain : domain,
                                flag(sharesSubdomains()),
                                path,
                                flag(isSecure),
                                QByteArray::number(expiry),
                                name,
                                value};
    return fields.join('\t');
}

bool CookieLine::isSameAs(const CookieLine& other) const
{
    return domain == other.domain && path == other.path && name == other.name;
}

} // namespace vormel

#pragma once

#include <QByteArray>

#include <optional>

namespace vormel {

/// One cookie as CookieStore gives and takes it. A value.
struct CookieLine
{
    QByteArray domain; ///< with a full stop before it if subdomains get the cookie, too
    QByteArray path;
    bool isSecure = false;
    bool isForHttpAlone = false;
    qint64 expiry = 0; ///< seconds since 1970; 0: the end of the session
    QByteArray name;
    QByteArray value;

    /// Nothing for what is no such line, or would be another cookie in a header.
    [[nodiscard]] static std::optional<CookieLine> parse(const QByteArray& line);
    [[nodiscard]] QByteArray text() const;

    [[nodiscard]] bool sharesSubdomains() const { return domain.startsWith('.'); }
    /// Whether one would take the other's place.
    [[nodiscard]] bool isSameAs(const CookieLine& other) const;

    friend bool operator==(const CookieLine&, const CookieLine&) = default;
};

} // namespace vormel

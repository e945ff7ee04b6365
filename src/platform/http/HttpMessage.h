#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace vormel {

class CookieStore;

struct HttpHeader
{
    QByteArray name;
    QByteArray value;
};

struct HttpRequest
{
    enum class Protocol
    {
        http1,  ///< file bodies: one connection each, the faster path
        newest, ///< pages
    };

    QUrl url; ///< http or https
    QByteArray method = "GET";
    std::vector<HttpHeader> headers;
    QByteArray body;
    Protocol protocol = Protocol::http1;
    std::chrono::seconds idleTimeout{60};     ///< without a byte from the server; does not run while suspended
    std::chrono::seconds totalTimeout{86400}; ///< from start to end
    std::shared_ptr<CookieStore> cookies;     ///< none: the client's own, process-wide store
};

/// The head of the answer that counts, after redirects.
struct HttpResponse
{
    int statusCode = 0;
    QUrl url; ///< where the answer came from
    std::vector<HttpHeader> headers;

    /// The value of the first header of that name, in any letter case.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;
    /// The values of all headers of that name, in their order.
    [[nodiscard]] std::vector<QByteArray> values(QByteArrayView name) const;
    /// The Content-Type without parameters, in small letters; empty if there is none.
    [[nodiscard]] QByteArray mimeType() const;
    /// Length of the body; -1 when it is missing, unusable or too large to be true.
    [[nodiscard]] qint64 expectedContentLength() const;
};

struct HttpError
{
    enum class Kind
    {
        cancelled,
        timedOut,
        cannotFindHost,
        cannotConnect,
        connectionLost,
        secureConnectionFailed,
        certificateUntrusted,
        tooManyRedirects,
        unsupportedUrl,
        badServerResponse,
        other,
    };

    Kind kind = Kind::other;
    int code = 0;    ///< the HTTP library's own number, 0 if the error is the client's own
    QString details; ///< technical, for the log; never shown
};

} // namespace vormel

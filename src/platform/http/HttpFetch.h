#pragma once

#include "platform/async/Eventual.h"
#include "platform/http/HttpClient.h"

#include <functional>
#include <stop_token>

namespace vormel {

/// What came of fetching one page. With an error, whatever had arrived before it is still here.
struct FetchResult
{
    std::optional<HttpError> error;
    HttpResponse response;
    QByteArray body;
    bool isBodyCut = false;      ///< the page was larger than asked for, or was not wanted beyond its head
    std::vector<QUrl> redirects; ///< each address that was followed to, in order
    std::optional<QUrl> refused; ///< where it was not followed to; the answer is that redirect
};

struct FetchOptions
{
    qint64 maxBodySize = qint64{8} * 1024 * 1024;
    /// Looks at the head before a byte of the body is taken; false ends the fetch there, without an error. On the
    /// client's thread; it must own all that it uses.
    std::function<bool(const HttpResponse&)> wantsBody;
    /// As above, for each redirect; a refused one becomes the answer.
    std::function<bool(const HttpResponse&, const QUrl& target)> followsRedirect;
    /// Ends the fetch as cancelled, at once and on the UI thread; its result comes a turn later.
    std::stop_token stop;
};

/// Fetches a whole page, or only its head, into memory. To be called and awaited on the UI thread; the client must
/// outlive the fetch. Giving the Eventual away ends nothing: the result is then dropped when it comes.
[[nodiscard]] Eventual<FetchResult> fetch(HttpClient& client, HttpRequest request, FetchOptions options = {});

} // namespace vormel

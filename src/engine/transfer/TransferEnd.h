#pragma once

#include "platform/http/HttpMessage.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace vormel {

/// How a transfer ended, for whoever decides what becomes of its item.
struct TransferEnd
{
    enum class Reason
    {
        finished,      ///< the server has sent all that it wanted to send
        networkError,  ///< `error` tells
        errorAnswer,   ///< the server answered with `statusCode` instead of the file
        foreignRange,  ///< the server sent another piece than the one asked for
        sourceChanged, ///< the server has another file than the one begun
        webPage,       ///< the server sent a page; `page` is its beginning
        notWritten,    ///< the disk did not take the bytes; `systemError` tells
        overlong,      ///< the server sent more than it had announced; nothing of that answer was kept
    };

    Reason reason = Reason::finished;
    std::optional<QString> partPath;
    std::optional<QString> finalPath;
    HttpError error;
    bool isPartGone = false;      ///< the part file was empty, and was removed
    bool areBytesGivenUp = false; ///< what came is lost on purpose: such an end moves nothing forward
    int statusCode = 0;
    int systemError = 0;
    std::optional<std::chrono::seconds> retryAfter; ///< how long the server wants to be left alone
    QByteArray page;
    std::optional<QString> suggestedName; ///< what the server called the file
};

} // namespace vormel

#pragma once

#include "platform/http/HttpMessage.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace vormel {

/// How a transfer ended, for whoever decides what becomes of its item.
struct TransferEnd
{
    enum class Reason
    {
        Finished,      ///< the server has sent all that it wanted to send
        NetworkError,  ///< `error` tells
        ErrorAnswer,   ///< the server answered with `statusCode` instead of the file
        ForeignRange,  ///< the server sent another piece than the one asked for
        SourceChanged, ///< the server has another file than the one begun
        WebPage,       ///< the server sent a page; `page` is its beginning
        NotWritten,    ///< the disk did not take the bytes; `systemError` tells
        Overlong,      ///< the server sent more than it had announced; nothing of that answer was kept
    };

    Reason reason = Reason::Finished;
    std::optional<QString> partPath;
    std::optional<QString> finalPath;
    HttpError error;
    bool isPartGone = false;      ///< the part file was empty, and was removed
    bool areBytesGivenUp = false; ///< what came is lost on purpose: such an end moves nothing forward
    int statusCode = 0;
    int systemError = 0;
    QByteArray page;
    std::optional<QString> suggestedName; ///< what the server called the file
};

} // namespace vormel

#pragma once

#include "platform/http/HttpMessage.h"

#include <QByteArrayView>

#include <memory>
#include <optional>

namespace vormel {

/// Hears of one transfer. All calls come on the client's one serial thread, in this order: any number of redirects, at
/// most one head, any number of blocks, one end. A call must not destroy its own task.
class HttpReceiver
{
public:
    enum class RedirectVerdict
    {
        follow,
        refuse, ///< the redirect itself becomes the answer
    };
    enum class HeadVerdict
    {
        allow,
        cancel,
    };
    enum class DataVerdict
    {
        proceed,
        suspend, ///< as HttpTask::suspend()
        cancel,
    };

    virtual ~HttpReceiver() = default;

    /// May the certificate of this host, in small letters, go unexamined? Asked anew for each hop. Any thread.
    [[nodiscard]] virtual bool acceptsAnyCertificateOf(const QString& /*host*/) const { return false; }
    virtual RedirectVerdict redirected(const HttpResponse& /*response*/, const QUrl& /*target*/)
    {
        return RedirectVerdict::follow;
    }
    virtual HeadVerdict responseReceived(const HttpResponse& response) = 0;
    /// The bytes are valid during the call only. At most 256 KiB.
    virtual DataVerdict dataReceived(QByteArrayView block) = 0;
    /// A cancelled transfer ends with Kind::cancelled, unless its task was destroyed.
    virtual void completed(const std::optional<HttpError>& error) = 0;
};

/// One transfer, owned by whoever asked for it. Destroying the task ends the transfer: when the destructor has
/// returned, the receiver is not called again. It waits at most for a call that is running.
class HttpTask
{
public:
    HttpTask() = default;
    HttpTask(const HttpTask&) = delete;
    HttpTask& operator=(const HttpTask&) = delete;
    virtual ~HttpTask() = default;

    /// Begins, or goes on after a suspension. Any thread.
    virtual void resume() = 0;
    /// Takes no more bytes from the network until resume(). A block that is under way may still arrive. Any thread.
    virtual void suspend() = 0;
};

/// Fetches over http and https. Redirects are followed hop by hop, at most 20, to http and https only.
class HttpClient
{
public:
    HttpClient() = default;
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;
    virtual ~HttpClient() = default;

    /// Makes a transfer that begins with resume(). The receiver must outlive the task. Any thread.
    [[nodiscard]] virtual std::unique_ptr<HttpTask> makeTask(HttpRequest request, HttpReceiver& receiver) = 0;

    /// The most bytes that a block may have from now on; at most 256 KiB. Smaller blocks make a finer speed cap. Any
    /// thread.
    virtual void setBlockSize(qsizetype bytes) = 0;

    /// Requests from now on use no connection that was made before. What is running goes on. Any thread.
    virtual void connectAnew() = 0;
};

} // namespace vormel

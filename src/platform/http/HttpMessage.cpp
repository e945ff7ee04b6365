#include "platform/http/HttpMessage.h"

namespace vormel {

std::optional<QByteArray> HttpResponse::header(QByteArrayView name) const
{
    for (const HttpHeader& header : headers) {
        if (header.name.compare(name, Qt::CaseInsensitive) == 0)
            return header.value;
    }
    return std::nullopt;
}

std::vector<QByteArray> HttpResponse::values(QByteArrayView name) const
{
    std::vector<QByteArray> found;
    for (const HttpHeader& header : headers) {
        if (header.name.compare(name, Qt::CaseInsensitive) == 0)
            found.push_back(header.value);
    }
    return found;
}

QByteArray HttpResponse::mimeType() const
{
    return header("Content-Type").value_or(QByteArray()).split(';').front().trimmed().toLower();
}

qint64 HttpResponse::expectedContentLength() const
{
    // With a transfer coding the body has its own framing, and a length beside it means nothing.
    if (header("Transfer-Encoding"))
        return -1;
    const QByteArray text = header("Content-Length").value_or(QByteArray()).trimmed();
    const bool hasOnlyDigits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool isNumber = false;
    const qint64 length = text.toLongLong(&isNumber);
    return isNumber && hasOnlyDigits ? length : -1;
}

} // namespace vormel

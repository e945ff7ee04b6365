#pragma once

#include "platform/http/HttpMessage.h"

#include <QByteArrayView>

namespace vormel {

/// Reads the heads of one request's answer, line by line: any number of preliminary ones, then the one that counts.
/// Status lines and lengths that are no numbers are found out instead of being read half, as the HTTP library does.
class HeadReader
{
public:
    enum class Step
    {
        more,     ///< further lines belong to it
        complete, ///< response() is the answer
        nonsense, ///< complaint() says why nothing of it may be believed
    };

    explicit HeadReader(QUrl url) { m_response.url = std::move(url); }

    /// One line with its end.
    [[nodiscard]] Step take(QByteArrayView line);

    [[nodiscard]] const HttpResponse& response() const { return m_response; }
    [[nodiscard]] const QString& complaint() const { return m_complaint; }

private:
    [[nodiscard]] Step takeStatusLine(QByteArrayView line);
    [[nodiscard]] Step takeField(QByteArrayView line);
    [[nodiscard]] Step takeFold(QByteArrayView line);
    [[nodiscard]] Step takeEnd();
    [[nodiscard]] Step complain(QString why);

    HttpResponse m_response;
    QString m_complaint;
    bool m_isInHead = false;   ///< behind a status line
    bool m_isFoldable = false; ///< the line before was a field
};

} // namespace vormel

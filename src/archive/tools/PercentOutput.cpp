#include "archive/tools/PercentOutput.h"

#include "text/BoundedRegex.h"

#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

std::optional<QString> decoded(const QByteArray& piece)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(piece);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

} // namespace

std::optional<double> firstFraction(const QByteArray& piece)
{
    // Most pieces name files; the rest of this is for those that count.
    if (!piece.contains('%'))
        return std::nullopt;
    const std::optional<QString> text = decoded(piece);
    if (!text)
        return std::nullopt;
    static const BoundedRegex percentage(uR"(\b(\d{1,3})%)"_s);
    static const QRegularExpression redrawn(u"[\\r\\n]"_s);
    // Tools redraw their line with a carriage return.
    for (const QString& line : text->split(redrawn)) {
        const BoundedRegex::Result found = percentage.search(line);
        if (!found)
            continue;
        const int number = found.match.captured(1).toInt();
        if (number <= 100)
            return number / 100.0;
    }
    return std::nullopt;
}

} // namespace vormel

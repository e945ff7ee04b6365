#include "text/PercentCoding.h"

#include <QStringDecoder>

namespace vormel {

namespace {

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::optional<QString> strictUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

QString lenientText(QByteArrayView bytes)
{
    return strictUtf8(bytes).value_or(QString::fromLatin1(bytes));
}

std::optional<QString> percentDecoded(QStringView text)
{
    if (!text.contains(u'%'))
        return text.toString();
    const QByteArray encoded = text.toUtf8();
    QByteArray bytes;
    bytes.reserve(encoded.size());
    for (qsizetype i = 0; i < encoded.size(); ++i) {
        if (encoded[i] != '%') {
            bytes += encoded[i];
            continue;
        }
        if (i + 2 >= encoded.size())
            return std::nullopt;
        const int high = hexValue(encoded[i + 1]);
        const int low = hexValue(encoded[i + 2]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return strictUtf8(bytes);
}

} // namespace vormel

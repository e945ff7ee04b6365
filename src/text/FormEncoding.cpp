#include "text/FormEncoding.h"

#include <QUrl>

namespace vormel {

QByteArray queryEncoded(const QString& text)
{
    return QUrl::toPercentEncoding(text, "!$&'()*+,;=:@/?");
}

QByteArray encodeFormFields(const FormFields& fields)
{
    QByteArray body;
    for (const auto& [name, value] : fields) {
        if (!body.isEmpty())
            body += '&';
        body += queryEncoded(name) + '=' + queryEncoded(value);
    }
    return body;
}

} // namespace vormel

#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

namespace vormel {

/// Names and values of a form, in its order.
using FormFields = std::vector<std::pair<QString, QString>>;

/// Percent-encodes in UTF-8 what may not stand in the query of a URL. "&", "=", "+" and "/" may, and stay as they are.
[[nodiscard]] QByteArray queryEncoded(const QString& text);

/// The body of a form that is posted: name=value, joined with "&".
[[nodiscard]] QByteArray encodeFormFields(const FormFields& fields);

} // namespace vormel

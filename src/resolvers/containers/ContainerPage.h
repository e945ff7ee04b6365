#pragma once

#include <QString>

namespace vormel {

/// Does the page want a person to prove to be one?
[[nodiscard]] bool containsCaptcha(const QString& html);

/// Does the page have a field for a password? Its letter case counts.
[[nodiscard]] bool hasPasswordField(const QString& html);

/// Does a page of FileCrypt or LFileCrypt, in English or German, refuse the password?
[[nodiscard]] bool saysWrongPassword(const QString& html);

/// The same for a page of Keeplinks, which has other words.
[[nodiscard]] bool saysKeeplinksWrongPassword(const QString& html);

} // namespace vormel

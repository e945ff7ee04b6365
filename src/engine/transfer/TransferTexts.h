#pragma once

#include "engine/transfer/TransferEnd.h"
#include "model/AppLanguage.h"

namespace vormel {

class AppSettings;

/// What the user is told of a page that came instead of the file.
[[nodiscard]] QString webPageText(const QByteArray& page, AppLanguage language);

/// What the user is told of a file that stayed short for good. In English only.
[[nodiscard]] QString incompleteText(qint64 received, qint64 total);

/// What the user is told of an end that is no finished file.
[[nodiscard]] QString endText(const TransferEnd& end, const AppSettings& settings);

/// What the user is told when the system refused to open, write or move a file of the download folder. Looks whether
/// that is there.
[[nodiscard]] QString fileErrorText(int systemError, const AppSettings& settings);

} // namespace vormel

#pragma once

#include <QFile>
#include <QLibraryInfo>

namespace vormel::fixtures {

/// Has this machine the Italian of Qt's own texts?
[[nodiscard]] inline bool isQtTranslated()
{
    return QFile::exists(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + QStringLiteral("/qtbase_it.qm"));
}

} // namespace vormel::fixtures

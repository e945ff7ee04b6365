#pragma once

#include "model/DownloadStatus.h"

#include <QFlags>
#include <QMetaType>
#include <QString>

namespace vormel {

/// The lines that a row has besides its first and its last one. They alone decide how high it is.
enum class RowLine : quint8
{
    recovery = 1U << 0,
    progress = 1U << 1,
    extraction = 1U << 2,
};
Q_DECLARE_FLAGS(RowLines, RowLine)
Q_DECLARE_OPERATORS_FOR_FLAGS(RowLines)

/// Everything a row shows, finished: what paints it needs neither the item nor the language.
struct RowContent
{
    RowLines lines;
    DownloadStatus::Kind status = DownloadStatus::queued;
    QString name;
    QString statusText;
    QString recoveryText;
    double progress = 0; ///< 0 to 1
    QString byteText;
    QString speedText;
    ExtractionStatus::Kind extraction = ExtractionStatus::idle;
    bool hasExtractionBar = false;
    double extractionProgress = 0; ///< 0 to 1
    QString extractionText;
    QString host;

    friend bool operator==(const RowContent&, const RowContent&) = default;
};

} // namespace vormel

Q_DECLARE_METATYPE(vormel::RowContent)

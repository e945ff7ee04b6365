#pragma once

#include "platform/clock/Clock.h"
#include "ui/queue/rows/RowButton.h"

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
    failure = 1U << 3, ///< of the archive step, which may take two lines to tell; stands in place of `extraction`
    verification = 1U << 4,
    error = 1U << 5,     ///< what the download failed of, right below the name
    longError = 1U << 6, ///< a second line for an `error` that may not do with one
    lack = 1U << 7,      ///< of a group
};
Q_DECLARE_FLAGS(RowLines, RowLine)
Q_DECLARE_OPERATORS_FOR_FLAGS(RowLines)

/// Everything a row shows, finished: what paints it needs neither the item nor the language.
struct RowContent
{
    RowLines lines;
    bool isMember = false; ///< stands below the header of its group
    DownloadStatus::Kind status = DownloadStatus::queued;
    QString name;
    QString statusText;
    std::vector<RowButton> buttons;
    QString recoveryText;
    double progress = 0; ///< 0 to 1
    QString byteText;
    QString speedText;
    ExtractionStatus::Kind extraction = ExtractionStatus::idle;
    bool hasExtractionBar = false;
    std::optional<double> extractionProgress; ///< 0 to 1; nothing for a bar without an end
    QString extractionText;
    QString elapsedText; ///< how long the archive step has been going on, beside a bar without an end
    QString retryText;   ///< of the button beside a failed archive step
    std::optional<RowButton> archiveCommand; ///< only menus have it
    VerificationResult::Kind verification = VerificationResult::none;
    QString verificationText;
    QString host;
    QString waitText;                     ///< why it does not start
    QString figuresText;                  ///< how big it is, and how much of it is there
    std::optional<SteadyTime> staysUntil; ///< then its texts are others without any change, as something counts

    friend bool operator==(const RowContent&, const RowContent&) = default;
};

/// Everything the header of a group shows, finished.
struct HeaderContent
{
    RowLines lines; ///< progress, lack, both or nothing
    GroupTally::Summary summary = GroupTally::Summary::queued;
    QString title;
    std::vector<RowButton> buttons;
    QString summaryText;
    QString partsText;
    QString sizeText;    ///< empty while no size is known
    double progress = 0; ///< 0 to 1
    QString byteText;
    QString speedText;
    ExtractionStatus::Kind extraction = ExtractionStatus::idle; ///< of the archive that the group is
    QString extractionText;
    VerificationResult::Kind verification = VerificationResult::none; ///< stands in place of `extraction`
    std::optional<RowButton> archiveCommand;
    QString lackText;
    QString lackDetail;        ///< which parts these are
    bool canBeRebuilt = false; ///< what is lacking
    bool isLost = false;       ///< it has failed, and cannot be rebuilt

    friend bool operator==(const HeaderContent&, const HeaderContent&) = default;
};

} // namespace vormel

Q_DECLARE_METATYPE(vormel::RowContent)
Q_DECLARE_METATYPE(vormel::HeaderContent)

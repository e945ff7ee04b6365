#pragma once

#include "engine/groups/DownloadGroup.h"

#include <optional>

namespace vormel {

class AppSettings;
class GroupNames;
class Questions;

/// How a set, or a single file, has come to its end.
struct GroupEnd
{
    enum Kind : quint8
    {
        downloaded,
        extracted,
        downloadFailed,
        extractionFailed,
    };

    Kind kind = downloaded;
    QString name;    ///< as the list shows it
    QString place;   ///< the first file, or the folder that it was extracted to; empty where it failed
    QString message; ///< why it failed
    ItemId item{};   ///< the one that speaks for it

    [[nodiscard]] bool isFailure() const { return kind == downloadFailed || kind == extractionFailed; }
    friend bool operator==(const GroupEnd&, const GroupEnd&) = default;
};

/// Nothing as long as any of it may still go on by itself or waits for the user.
[[nodiscard]] std::optional<GroupEnd> endOf(const DownloadGroup& group, const GroupNames& names,
                                            const AppSettings& settings, const Questions& questions);

} // namespace vormel

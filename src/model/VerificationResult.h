#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace vormel {

/// What came of the user's wish to have a set of volumes tested. It is shown beside the item of the first volume, until
/// something else happens to that, and never stored.
struct VerificationResult
{
    enum Kind : quint8
    {
        none,
        running,
        sound,
        fetchedAgain,   ///< `volumes` of them are damaged or missing, and on their way anew
        damaged,        ///< as many are, but nothing is on its way; `detail` names them
        passwordNeeded, ///< nothing was tested
        busy,           ///< nothing was tested, as the archive step of the set is under way
        failed,         ///< for a reason that names no volume; `detail` tells it, in English
    };

    Kind kind = none;
    int volumes = 0;
    QString detail = {};
    std::vector<qint64> parts = {};  ///< the numbers of those on their way anew, ascending, each once
    std::optional<int> percent = {}; ///< of a running test, where the tool tells

    friend bool operator==(const VerificationResult&, const VerificationResult&) = default;
};

} // namespace vormel

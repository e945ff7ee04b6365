#pragma once

#include "model/AppLanguage.h"

namespace vormel {

/// Why a file of services is not taken, and where.
struct ServicesProblem
{
    enum class Reason
    {
        unreadable,
        tooLarge,
        notJson,
        notObject,
        unknownKey,
        repeatedKey,
        wrongType,
        wrongCount,
        noName,
        noDomain,
        capitals,
        ipAddress,
        localDomain,
        noTerabytezWord,
        noRootUrl,
        foreignRoot,
        repeatedValue,
        clash,
    };

    Reason reason = Reason::unreadable;
    int line = 0;   ///< from 1; 0 where no line is to blame
    QString key;    ///< empty where none is to blame
    QString detail; ///< how many, or which other value, where the reason is about that

    /// The place and the reason, for the user.
    [[nodiscard]] QString text(AppLanguage language) const;

    friend bool operator==(const ServicesProblem&, const ServicesProblem&) = default;
};

} // namespace vormel

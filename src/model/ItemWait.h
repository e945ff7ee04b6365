#pragma once

#include "platform/clock/Clock.h"

#include <QString>

namespace vormel {

/// Why a queued item does not start though a slot may be free, as its row tells it. It is never stored, and decides
/// nothing: who holds the item back says so here.
struct ItemWait
{
    enum Kind : quint8
    {
        none,
        nextTry,    ///< the network or the host failed it; `due` is when it is tried again
        serverRest, ///< the server itself asked to be left alone until `due`
        sameName,   ///< another item is fetching a file of this very name
        signIn,     ///< the user has to sign in to `host`
    };

    Kind kind = none;
    SteadyTime due = {};
    QString host = {}; ///< as it is shown

    friend bool operator==(const ItemWait&, const ItemWait&) = default;
};

} // namespace vormel

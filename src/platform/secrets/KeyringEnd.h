#pragma once

namespace vormel {

/// How an operation on the keyring ended.
enum class KeyringEnd
{
    done,
    refused,    ///< by the user, who dismissed a prompt, or by the keyring
    unanswered, ///< the service went away or does not know the session any more
};

} // namespace vormel

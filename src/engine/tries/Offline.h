#pragma once

namespace vormel {

class Link;
class NetworkState;

/// Whether anything may be asked of the network: what the desktop says, unless the user knows better. UI thread only.
class Offline
{
public:
    /// The state must outlive this.
    explicit Offline(const NetworkState& state)
        : m_state(state)
    {}

    [[nodiscard]] bool isOffline() const;
    /// Must the address wait until there is a network again?
    [[nodiscard]] bool holdsBack(const Link& address) const;

    /// The desktop is wrong, until it says something else.
    void doubt() { m_isDoubted = true; }
    /// The desktop has said something.
    void believe() { m_isDoubted = false; }

private:
    const NetworkState& m_state;
    bool m_isDoubted = false;
};

} // namespace vormel

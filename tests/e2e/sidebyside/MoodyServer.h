#pragma once

#include "e2e/sidebyside/Catalogue.h"
#include "sites/FileServer.h"

#include <atomic>

namespace vormel::e2e {

/// Serves a catalogue, and cuts, stalls, refuses and begins anew as it likes until it is told to be calm. How it
/// answers the n-th request for a file follows from the seed.
class MoodyServer
{
public:
    /// The catalogue must outlive this.
    MoodyServer(const Catalogue& catalogue, unsigned seed);

    [[nodiscard]] QString url(const Offer& offer) const;
    /// What stalls goes on, for now.
    void release() { m_server.release(); }
    /// From now on nothing goes wrong, but what has begun may still stall once.
    void calmDown() { m_isCalm = true; }

private:
    [[nodiscard]] sites::Answer answer(const Offer& offer, int request) const;

    unsigned m_seed;
    std::atomic<bool> m_isCalm = false;
    sites::FileServer m_server; ///< last: its threads use the others
};

} // namespace vormel::e2e

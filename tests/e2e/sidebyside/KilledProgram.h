#pragma once

#include "e2e/sidebyside/Scene.h"

#include <random>

namespace vormel::e2e {

/// The engine as a process on the folders of a scene, killed sooner or later.
class KilledProgram
{
public:
    KilledProgram(Scene& scene, unsigned seed);

    /// One life: it takes up what is in the queue, and dies at any moment or while it unpacks.
    void runAndKill();
    /// How many deaths left an archive half unpacked.
    [[nodiscard]] int runsCutOff() const { return m_runsCutOff; }

private:
    [[nodiscard]] bool isUnpacking() const;

    Scene& m_scene;
    std::mt19937 m_random;
    int m_runsCutOff = 0;
};

} // namespace vormel::e2e

#pragma once

#include "fixtures/FakeTools.h"

namespace vormel::e2e {

/// The machine's real archive tools, which do all their work and then do not end as long as they are held.
class HeldTools
{
public:
    HeldTools();

    [[nodiscard]] ToolRunner::Folders folders() const { return m_tools.folders(); }
    void hold() const;
    void letGo() const;

private:
    fixtures::Sandbox m_sandbox;
    fixtures::FakeTools m_tools;
};

} // namespace vormel::e2e

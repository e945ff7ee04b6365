#pragma once

#include <cstdint>

namespace vormel {

/// While it lives, permissions hold for this thread also if the tests are run by root.
class OrdinaryUser
{
public:
    OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser();

private:
    std::uint32_t m_before = 0;
};

} // namespace vormel

#include "archive/workspace/OrdinaryUser.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <linux/capability.h>
#include <stdexcept>

namespace vormel {

namespace {

using Sets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

/// The C library has no function for it.
void call(long number, Sets& sets)
{
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    if (::syscall(number, &header, sets.data()) != 0)
        throw std::runtime_error("capabilities");
}

std::uint32_t exchangeEffective(std::uint32_t kept, std::uint32_t added)
{
    Sets sets{};
    call(SYS_capget, sets);
    const std::uint32_t before = sets[0].effective;
    sets[0].effective = (before & kept) | added;
    call(SYS_capset, sets);
    return before;
}

constexpr std::uint32_t bit(unsigned capability)
{
    return 1U << capability;
}

} // namespace

OrdinaryUser::OrdinaryUser()
    : m_before(exchangeEffective(~(bit(CAP_DAC_OVERRIDE) | bit(CAP_DAC_READ_SEARCH) | bit(CAP_FOWNER)), 0))
{}

OrdinaryUser::~OrdinaryUser()
{
    exchangeEffective(0, m_before);
}

} // namespace vormel

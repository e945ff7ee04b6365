#pragma once

#include "text/DescribedError.h"

namespace vormel {

/// The destination could not be made, or what was unpacked could not be looked over.
class DestinationError final : public DescribedError
{
public:
    using DescribedError::DescribedError;
};

} // namespace vormel

#pragma once

#include <exception>

namespace vormel {

/// Thrown in place of a result that nobody wants any more.
class WalkStopped final : public std::exception
{
public:
    [[nodiscard]] const char* what() const noexcept override { return "the walk was stopped"; }
};

} // namespace vormel

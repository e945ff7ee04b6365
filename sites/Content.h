#pragma once

#include "sites/PatternContent.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <variant>

namespace vormel::sites {

// The bytes of a served file or page: given ones, shared between copies, or a pattern. An immutable value.
class Content
{
public:
    Content(std::string bytes = {}); // NOLINT(google-explicit-constructor): a resource reads better without
    Content(const char* text);       // NOLINT(google-explicit-constructor)
    Content(PatternContent pattern); // NOLINT(google-explicit-constructor)

    [[nodiscard]] std::int64_t size() const;

    // Copies the bytes from `offset` on; `out` must lie within the content.
    void read(std::int64_t offset, std::span<char> out) const;

private:
    std::variant<std::shared_ptr<const std::string>, PatternContent> m_bytes;
};

} // namespace vormel::sites

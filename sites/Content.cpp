#include "sites/Content.h"

#include <cstring>
#include <utility>

namespace vormel::sites {

using SharedBytes = std::shared_ptr<const std::string>;

Content::Content(std::string bytes)
    : m_bytes(std::make_shared<const std::string>(std::move(bytes)))
{}

Content::Content(const char* text)
    : Content(std::string(text))
{}

Content::Content(PatternContent pattern)
    : m_bytes(std::move(pattern))
{}

std::int64_t Content::size() const
{
    if (const auto* pattern = std::get_if<PatternContent>(&m_bytes))
        return pattern->size();
    return static_cast<std::int64_t>(std::get<SharedBytes>(m_bytes)->size());
}

void Content::read(std::int64_t offset, std::span<char> out) const
{
    if (const auto* pattern = std::get_if<PatternContent>(&m_bytes))
        pattern->fill(offset, out);
    else if (!out.empty())
        std::memcpy(out.data(), std::get<SharedBytes>(m_bytes)->data() + offset, out.size());
}

} // namespace vormel::sites

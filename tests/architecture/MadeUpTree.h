#pragma once

#include <filesystem>
#include <string>

namespace vormel::architecture {

/// A folder of made-up sources that lives as long as the test.
class MadeUpTree
{
public:
    MadeUpTree();
    ~MadeUpTree();
    MadeUpTree(const MadeUpTree&) = delete;
    MadeUpTree& operator=(const MadeUpTree&) = delete;

    void write(const std::string& path, const std::string& text) const;
    [[nodiscard]] const std::filesystem::path& root() const { return m_root; }

private:
    std::filesystem::path m_root;
};

} // namespace vormel::architecture

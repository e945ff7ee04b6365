#include "MadeUpTree.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace vormel::architecture {

MadeUpTree::MadeUpTree()
{
    std::string name = (std::filesystem::temp_directory_path() / "vormel-tree-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder could be made at " + name);
    m_root = name;
}

MadeUpTree::~MadeUpTree()
{
    std::error_code ignored; // A folder left behind in the temporary folder harms no test.
    std::filesystem::remove_all(m_root, ignored);
}

void MadeUpTree::write(const std::string& path, const std::string& text) const
{
    const auto file = m_root / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    if (!stream.flush())
        throw std::runtime_error("could not write " + file.string());
}

} // namespace vormel::architecture

#include "sites/TextFile.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vormel::sites {

void writeTextFile(const std::filesystem::path& path, std::string_view text)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text << std::flush;
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

std::string readTextFile(const std::filesystem::path& path)
{
    const std::ifstream file(path, std::ios::binary);
    if (!file)
        return {};
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace vormel::sites

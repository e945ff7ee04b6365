#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace vormel::sites {

// A new folder that goes with this object.
class TemporaryFolder
{
public:
    TemporaryFolder()
        : m_path(make())
    {}
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

private:
    static std::filesystem::path make()
    {
        auto name = (std::filesystem::temp_directory_path() / "vormel-sites-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no temporary folder");
        return name;
    }

    std::filesystem::path m_path;
};

} // namespace vormel::sites

#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace vormel {

/// What the user installs programs with.
enum class PackageManager
{
    apt,
    dnf,
    pacman,
    zypper,
    brew,
};

/// Tells which package manager this machine has.
class PackageManagers
{
public:
    PackageManagers() = default;
    PackageManagers(const PackageManagers&) = delete;
    PackageManagers& operator=(const PackageManagers&) = delete;
    virtual ~PackageManagers() = default;

    /// The machine's own; nothing if it has none that is known here. Asks the disk each time, which is cheap.
    [[nodiscard]] virtual std::optional<PackageManager> present() const = 0;
};

/// Finds it by the existence of its program. A system's own manager comes before one that was added to the system.
class DesktopPackageManagers final : public PackageManagers
{
public:
    /// The root of another file system than this machine's can be given, without a "/" at its end.
    explicit DesktopPackageManagers(const QString& root = {});

    [[nodiscard]] std::optional<PackageManager> present() const override;

private:
    struct Program
    {
        PackageManager manager;
        QString path;
    };

    std::vector<Program> m_programs; ///< the first that is there counts
};

} // namespace vormel

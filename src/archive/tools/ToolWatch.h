#pragma once

#include <QFileSystemWatcher>
#include <QObject>

#include <optional>
#include <vector>

namespace vormel {

class ToolRunner;

/// Which of the tools are there that not every system has.
struct FoundTools
{
    bool unrar = false;
    bool rar = false;
    bool sevenZip = false; ///< under any of its names
    bool unzip = false;    ///< where it is called from

    friend bool operator==(const FoundTools&, const FoundTools&) = default;
};

/// Where a tool lies that not every system has; nowhere if it is not there.
struct ToolPlace
{
    QString name;
    std::optional<QString> path;
};

/// Asks the disk.
[[nodiscard]] FoundTools findTools(const ToolRunner& runner);

/// Follows which tools there are, as they are installed and removed while the program runs. UI thread only.
class ToolWatch final : public QObject
{
    Q_OBJECT

public:
    /// The runner must outlive it.
    explicit ToolWatch(const ToolRunner& runner, QObject* parent = nullptr);

    [[nodiscard]] const FoundTools& tools() const { return m_tools; }

    /// Asks the disk now.
    void look();
    /// Asks the disk where the tools are. They stand in the order of FoundTools.
    [[nodiscard]] std::vector<ToolPlace> places() const;

Q_SIGNALS:
    void toolsChanged();

private:
    const ToolRunner& m_runner;
    FoundTools m_tools;
    QFileSystemWatcher m_folders;
};

} // namespace vormel

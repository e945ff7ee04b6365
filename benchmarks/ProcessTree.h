#pragma once

#include <QtGlobal>

#include <optional>
#include <vector>

namespace vormel::bench {

/// A process with all that it has started, itself and through others, as they are at this moment.
class ProcessTree
{
public:
    explicit ProcessTree(qint64 root);

    /// All of them together, memory that several share counted once. Nothing where this user may not look.
    [[nodiscard]] std::optional<double> pssMebibytes() const;
    /// Those of the embedded engine that show pages.
    [[nodiscard]] int renderers() const;

private:
    std::vector<qint64> m_processes;
};

} // namespace vormel::bench

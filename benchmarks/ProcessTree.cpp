#include "ProcessTree.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

std::optional<QByteArray> textOf(qint64 process, QLatin1StringView name)
{
    QFile file(u"/proc/%1/"_s.arg(process) + name);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

/// Of /proc/N/stat; behind the program's name, which is in parentheses and may have blanks, come the state and these.
enum class StatField
{
    parent = 1,
    threads = 17,
};

qint64 numberOf(qint64 process, StatField field)
{
    const QByteArray stat = textOf(process, "stat"_L1).value_or(QByteArray());
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(static_cast<int>(field)).toLongLong();
}

/// Many are forked off a zygote and keep its command line. The zygote itself has one thread, or it could not fork.
bool isRenderer(qint64 process)
{
    const QByteArray command = textOf(process, "cmdline"_L1).value_or(QByteArray());
    return command.contains("--type=renderer") ||
           (command.contains("--type=zygote") && numberOf(process, StatField::threads) > 1);
}

using Children = std::multimap<qint64, qint64>; ///< by parent

void collect(qint64 process, const Children& children, std::vector<qint64>& found)
{
    found.push_back(process);
    const auto [begin, end] = children.equal_range(process);
    std::for_each(begin, end, [&](const auto& child) { collect(child.second, children, found); });
}

std::optional<double> pssKibibytes(qint64 process)
{
    const std::optional<QByteArray> memory = textOf(process, "smaps_rollup"_L1);
    if (!memory)
        return std::nullopt;
    for (const QByteArray& line : memory->split('\n')) {
        if (line.startsWith("Pss:"))
            return line.mid(4).trimmed().split(' ').first().toDouble();
    }
    return 0; // ended, and not yet taken note of
}

} // namespace

ProcessTree::ProcessTree(qint64 root)
{
    Children children;
    for (const QString& name : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        if (const qint64 process = name.toLongLong(); process > 0)
            children.emplace(numberOf(process, StatField::parent), process);
    }
    collect(root, children, m_processes);
}

std::optional<double> ProcessTree::pssMebibytes() const
{
    constexpr double kibibytes = 1024;
    double sum = 0;
    for (const qint64 process : m_processes) {
        const std::optional<double> pss = pssKibibytes(process);
        if (!pss && QFile::exists(u"/proc/%1"_s.arg(process)))
            return std::nullopt;
        sum += pss.value_or(0);
    }
    return sum / kibibytes;
}

int ProcessTree::renderers() const
{
    return static_cast<int>(std::count_if(m_processes.begin(), m_processes.end(), &isRenderer));
}

} // namespace vormel::bench

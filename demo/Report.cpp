#include "demo/Report.h"

#include <cstdlib>
#include <iostream>

namespace vormel::demo {

namespace {

/// Flushed each time, so that a pipe shows a line when it happens.
void print(const QString& line)
{
    std::cout << line.toStdString() << std::endl;
}

} // namespace

void Report::say(const QString& line) const
{
    constexpr double millisecondsPerSecond = 1000;
    const double seconds = static_cast<double>(m_sinceStart.elapsed()) / millisecondsPerSecond;
    print(QStringLiteral("[%1 s] %2").arg(seconds, 5, 'f', 1).arg(line));
}

void Report::check(const QString& claim, const QString& objection)
{
    ++m_checks;
    if (objection.isEmpty())
        return say(QStringLiteral("      ok  ") + claim);
    m_failures.append(claim + QStringLiteral(" -- ") + objection);
    say(QStringLiteral("  FAILED  ") + m_failures.last());
}

int Report::conclude() const
{
    if (allHeld()) {
        print(QStringLiteral("Demo: all %1 checks held").arg(m_checks));
        return EXIT_SUCCESS;
    }
    print(QStringLiteral("Demo: %1 of %2 checks failed").arg(m_failures.size()).arg(m_checks));
    for (const QString& failure : m_failures)
        print(QStringLiteral("  ") + failure);
    return EXIT_FAILURE;
}

} // namespace vormel::demo

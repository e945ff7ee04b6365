#include "demo/Report.h"

#include <cstdlib>
#include <iostream>

using namespace Qt::StringLiterals;

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
    print(u"[%1 s] %2"_s.arg(seconds, 5, 'f', 1).arg(line));
}

void Report::check(const QString& claim, const QString& objection)
{
    ++m_checks;
    if (objection.isEmpty())
        return say(u"      ok  "_s + claim);
    m_failures.append(claim + u" -- "_s + objection);
    say(u"  FAILED  "_s + m_failures.last());
}

int Report::conclude() const
{
    if (allHeld()) {
        print(u"Demo: all %1 checks held"_s.arg(m_checks));
        return EXIT_SUCCESS;
    }
    print(u"Demo: %1 of %2 checks failed"_s.arg(m_failures.size()).arg(m_checks));
    for (const QString& failure : m_failures)
        print(u"  "_s + failure);
    return EXIT_FAILURE;
}

} // namespace vormel::demo

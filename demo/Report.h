#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

namespace vormel::demo {

/// Says on standard output what happens, each line with the seconds since the start, and keeps count of what was
/// checked.
class Report
{
public:
    Report() { m_sinceStart.start(); }

    void say(const QString& line) const;
    /// An empty objection means that the claim holds.
    void check(const QString& claim, const QString& objection);
    [[nodiscard]] bool allHeld() const { return m_failures.isEmpty() && m_checks > 0; }
    /// The closing words; gives the exit code.
    [[nodiscard]] int conclude() const;

private:
    QElapsedTimer m_sinceStart;
    int m_checks = 0;
    QStringList m_failures;
};

} // namespace vormel::demo

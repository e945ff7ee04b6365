#pragma once

#include <QRegularExpression>
#include <QString>

namespace vormel {

/// A regular expression for text from outside: compiled once, bounded in its work, and honest about giving up.
/// Immutable and safe to use from any thread.
class BoundedRegex
{
public:
    enum class Outcome
    {
        Match,
        None,
        Error, ///< the engine ran into a limit; nothing is known about the text
    };

    struct Result
    {
        Outcome outcome = Outcome::None;
        QRegularExpressionMatch match;

        explicit operator bool() const { return outcome == Outcome::Match; }
    };

    /// The pattern is the program's own and must compile; that is asserted.
    explicit BoundedRegex(const QString& pattern, QRegularExpression::PatternOptions options = {});

    [[nodiscard]] Result search(const QString& text) const;

    /// The text with the first match, if there is one, taken out.
    [[nodiscard]] QString removedFrom(const QString& text) const;

private:
    QRegularExpression m_fast;
    QRegularExpression m_careful;
};

} // namespace vormel

#pragma once

#include <QRegularExpression>
#include <QString>

#include <functional>
#include <vector>

namespace vormel {

/// A regular expression for text from outside: compiled once, bounded in its work, and honest about giving up.
/// Immutable and safe to use from any thread.
class BoundedRegex
{
public:
    enum class Outcome
    {
        match,
        none,
        error, ///< the engine ran into a limit; nothing is known about the text
    };

    struct Result
    {
        Outcome outcome = Outcome::none;
        QRegularExpressionMatch match;

        explicit operator bool() const { return outcome == Outcome::match; }
    };

    /// The pattern is the program's own and must compile; that is asserted.
    explicit BoundedRegex(const QString& pattern, QRegularExpression::PatternOptions options = {});
    [[nodiscard]] static BoundedRegex ignoringCase(const QString& pattern)
    {
        return BoundedRegex(pattern, QRegularExpression::CaseInsensitiveOption);
    }

    /// The first match at or behind that place.
    [[nodiscard]] Result search(const QString& text, qsizetype from = 0) const;

    /// Every match, from left to right. Where the engine ran into a limit on the way, none: half a list would pass for
    /// a whole one.
    [[nodiscard]] std::vector<QRegularExpressionMatch> all(const QString& text) const;

    /// What that group, or for 0 the whole pattern, holds in each of all matches; they look into the text, which must
    /// outlive them. A long list of matches costs far more memory than this.
    [[nodiscard]] std::vector<QStringView> captures(const QString& text, int group) const;

    /// The text with the first match, if there is one, taken out.
    [[nodiscard]] QString removedFrom(const QString& text) const;

private:
    using Visitor = std::function<void(const QRegularExpressionMatch&)>;

    /// False if the engine ran into a limit on the way.
    [[nodiscard]] bool visitAll(const QString& text, const Visitor& visit) const;
    [[nodiscard]] Result search(const QString& text, qsizetype from, QRegularExpression::MatchOptions options) const;

    QRegularExpression m_fast;
    QRegularExpression m_careful;
};

} // namespace vormel

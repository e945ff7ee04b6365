#pragma once

#include <QString>

#include <compare>
#include <optional>
#include <vector>

namespace vormel {

/// A version of a program, in the order in which versions appear: 1.9 < 1.10-beta2 < 1.10-beta10 < 1.10 = 1.10.0.
///
/// Numbers between dots are compared as numbers, missing ones count as 0. Whatever follows the numbers names something
/// before the release of these numbers; two such suffixes are compared piece by piece, runs of digits as numbers. What
/// follows a "+" says how it was built and does not count, nor does a "v" in front.
class Version
{
public:
    /// Nothing for a text that does not begin with a number, or with one beyond any sense.
    [[nodiscard]] static std::optional<Version> parse(const QString& text);

    /// As it was written, without space around it.
    [[nodiscard]] const QString& text() const { return m_text; }

    [[nodiscard]] std::weak_ordering operator<=>(const Version& other) const;
    [[nodiscard]] bool operator==(const Version& other) const { return std::is_eq(*this <=> other); }

private:
    Version() = default;

    QString m_text;
    std::vector<quint32> m_numbers; ///< without zeros at the end
    QString m_suffix;               ///< of a pre-release
};

} // namespace vormel

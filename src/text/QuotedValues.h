#pragma once

#include <QStringView>

#include <optional>

namespace vormel {

/// The values that stand in quotes behind a lead, as in href="value", from left to right: what lead["']([^"']*)["'] can
/// match in a page, for whoever then judges each value by itself. The lead is found in any letter case, also at the end
/// of a longer word. Every quote that is named opens a value and ends it. A value that begins inside the one before is
/// one, too. However the page is made, no part of it is read more often than a page of that length must be.
class QuotedValues
{
public:
    /// What the views show must outlive this. The lead ends in "=".
    QuotedValues(QStringView text, QStringView lead, QStringView quotes)
        : m_text(text)
        , m_lead(lead)
        , m_quotes(quotes)
    {}

    /// Nothing behind the last one.
    [[nodiscard]] std::optional<QStringView> next();

private:
    QStringView m_text;
    QStringView m_lead;
    QStringView m_quotes;
    qsizetype m_at = 0;
};

} // namespace vormel

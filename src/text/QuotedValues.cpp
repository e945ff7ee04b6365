#include "text/QuotedValues.h"

#include <algorithm>

namespace vormel {

std::optional<QStringView> QuotedValues::next()
{
    while ((m_at = m_text.indexOf(m_lead, m_at, Qt::CaseInsensitive)) >= 0) {
        m_at += m_lead.size();
        if (m_at == m_text.size() || !m_quotes.contains(m_text[m_at]))
            continue;
        ++m_at;
        const QStringView rest = m_text.mid(m_at);
        const auto end = std::find_first_of(rest.begin(), rest.end(), m_quotes.begin(), m_quotes.end());
        // Without another quote there is no value further on, either.
        if (end == rest.end())
            break;
        return rest.first(end - rest.begin());
    }
    m_at = m_text.size();
    return std::nullopt;
}

} // namespace vormel

#include "RandomPages.h"

namespace vormel::tests {

RandomPages::RandomPages(std::vector<QString> wanted, std::vector<QString> others)
    : m_wanted(std::move(wanted))
    , m_all(std::move(others))
{
    m_all.insert(m_all.end(), m_wanted.begin(), m_wanted.end());
}

QString RandomPages::next()
{
    QString page;
    std::size_t turn = 0;
    for (std::size_t left = 1 + below(24); left > 0; --left) {
        if (below(2) == 0)
            page += m_wanted[turn++ % m_wanted.size()];
        else
            page += m_all[below(m_all.size())];
    }
    return page;
}

std::size_t RandomPages::below(std::size_t bound)
{
    // The library's distributions differ from one to the next.
    return m_random() % bound;
}

} // namespace vormel::tests

#include "platform/process/BoundedOutput.h"

#include <algorithm>

namespace vormel {

void BoundedOutput::append(const QByteArray& piece)
{
    const qsizetype forHead = std::min(keptEachSide - m_head.size(), piece.size());
    m_head.append(piece.constData(), forHead);
    m_tail.append(piece.constData() + forHead, piece.size() - forHead);
    // Cut only now and then: each cut moves what stays.
    if (m_tail.size() > 2 * keptEachSide) {
        m_leftOut += m_tail.size() - keptEachSide;
        m_tail.remove(0, m_tail.size() - keptEachSide);
    }
}

QByteArray BoundedOutput::text() const
{
    const QByteArray tail = m_tail.right(keptEachSide);
    const qint64 leftOut = m_leftOut + m_tail.size() - tail.size();
    if (leftOut == 0)
        return m_head + tail;
    return m_head + "\n[" + QByteArray::number(leftOut) + " bytes left out]\n" + tail;
}

} // namespace vormel

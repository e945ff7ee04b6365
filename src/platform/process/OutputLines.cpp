#include "platform/process/OutputLines.h"

#include <algorithm>
#include <utility>

namespace vormel {

OutputLines::OutputLines(std::function<void(const QByteArray&)> receiver)
    : m_receiver(std::move(receiver))
{}

void OutputLines::append(const QByteArray& piece)
{
    qsizetype start = 0;
    for (qsizetype feed = piece.indexOf('\n'); feed >= 0; feed = piece.indexOf('\n', start)) {
        keep(piece, start, feed - start);
        m_receiver(std::exchange(m_line, {}));
        start = feed + 1;
    }
    keep(piece, start, piece.size() - start);
}

void OutputLines::end()
{
    if (!m_line.isEmpty())
        m_receiver(std::exchange(m_line, {}));
}

void OutputLines::keep(const QByteArray& piece, qsizetype from, qsizetype size)
{
    m_line.append(piece.constData() + from, std::min(size, maxLength - m_line.size()));
}

} // namespace vormel

#pragma once

#include <QByteArray>

namespace vormel {

/// Keeps the beginning and the end of what a program prints, so that no amount of it fills the memory.
class BoundedOutput
{
public:
    /// Bytes kept of the beginning, and as many of the end.
    static constexpr qsizetype keptEachSide = qsizetype{1024} * 1024;

    void append(const QByteArray& piece);

    /// Everything, or both ends with a line between them that tells how much is missing.
    [[nodiscard]] QByteArray text() const;

private:
    QByteArray m_head;
    QByteArray m_tail;
    qint64 m_leftOut = 0;
};

} // namespace vormel

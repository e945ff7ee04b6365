#pragma once

#include <QByteArray>

#include <functional>

namespace vormel {

/// Makes whole lines out of what a program prints, in whatever pieces it comes. Only a line feed ends a line: redraws
/// by backspaces and carriage returns are part of it.
class OutputLines
{
public:
    /// Bytes of a line that are passed on; the rest of a longer one is left out.
    static constexpr qsizetype maxLength = qsizetype{16} * 1024;

    /// The receiver gets each line without its end, in the call that completes it.
    explicit OutputLines(std::function<void(const QByteArray&)> receiver);

    void append(const QByteArray& piece);
    /// Passes on what stands behind the last line feed. To be called once, when nothing more comes.
    void end();

private:
    void keep(const QByteArray& piece, qsizetype from, qsizetype size);

    std::function<void(const QByteArray&)> m_receiver;
    QByteArray m_line;
};

} // namespace vormel

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vormel {

/// Finds in what unrar, rar, 7z, unzip and tar print the lines that tell why they failed, among banners, progress and
/// the names of members that are well. A name that a tool prints, such as "Wrong password.txt", tells nothing.
class ToolReason
{
public:
    /// One line of the output, without its end, in order.
    void readLine(const QByteArray& line);

    /// The lines that tell, each once, joined by line feeds; empty when none does.
    [[nodiscard]] QString text() const;

    /// Does the tool say that the password is missing or wrong?
    [[nodiscard]] bool blamesPassword() const { return m_blamesPassword; }
    /// Does it say so only for want of a better guess, as damaged data look the same to it?
    [[nodiscard]] bool isUnsureOfPassword() const { return m_isUnsureOfPassword; }

private:
    QStringList m_lines;
    QStringList m_lesser; ///< say something only where nothing else does
    bool m_blamesPassword = false;
    bool m_isUnsureOfPassword = false;
};

/// Reads a whole output.
[[nodiscard]] ToolReason toolReason(const QString& output);

} // namespace vormel

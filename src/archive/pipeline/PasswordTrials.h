#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

namespace vormel {

/// Remembers which passwords failed where a tool could not tell a wrong one from damaged data. A user who gives the
/// same answer again means it: then the archive is damaged, and asking on would never end. In memory only, and never a
/// password as it is.
class PasswordTrials
{
public:
    PasswordTrials();

    /// Notes that the password failed for the archive at this path. Had it failed there before?
    [[nodiscard]] bool hasFailedAgain(const QString& archive, const QString& password);

    /// The archive was unpacked or is tried from the beginning: what failed before says nothing any more.
    void forget(const QString& archive);

private:
    QByteArray m_salt;
    QHash<QString, QSet<QByteArray>> m_failed;
};

} // namespace vormel

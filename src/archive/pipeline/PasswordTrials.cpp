#include "archive/pipeline/PasswordTrials.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>

#include <array>

namespace vormel {

PasswordTrials::PasswordTrials()
{
    std::array<quint32, 8> salt{};
    QRandomGenerator::system()->fillRange(salt.data(), salt.size());
    m_salt = QByteArray(reinterpret_cast<const char*>(salt.data()), sizeof salt);
}

bool PasswordTrials::hasFailedAgain(const QString& archive, const QString& password)
{
    const QByteArray mark = QMessageAuthenticationCode::hash(password.toUtf8(), m_salt, QCryptographicHash::Sha256);
    QSet<QByteArray>& failed = m_failed[archive];
    const bool isAgain = failed.contains(mark);
    failed.insert(mark);
    return isAgain;
}

void PasswordTrials::forget(const QString& archive)
{
    m_failed.remove(archive);
}

} // namespace vormel

#pragma once

#include "platform/secrets/SecretStore.h"

#include <QJsonObject>
#include <QStringList>

namespace vormel {

class FileWriter;

/// Passwords in a file that only its owner can read, in a folder that only its owner can open; for machines without a
/// keyring. Read once, at construction; each change takes effect at once and is handed to the writer. UI thread only.
class FileSecrets final : public SecretStore
{
public:
    /// A file that cannot be understood counts as empty, and is kept beside before it is written over. The folder of
    /// the path holds nothing else; it is made when there is something to write. Where it cannot be closed to others,
    /// nothing is written. The writer must outlive this.
    FileSecrets(QString path, FileWriter& writer);

    [[nodiscard]] Place place() const override { return Place::ownFile; }
    /// Under which there is a password.
    [[nodiscard]] QStringList keys() const;
    [[nodiscard]] QCoro::Task<> save(QString key, QString secret) override;
    [[nodiscard]] QCoro::Task<QString> load(QString key) override;
    [[nodiscard]] QCoro::Task<> remove(QString key) override;

private:
    void read();
    void write();

    QString m_path;
    FileWriter& m_writer;
    QJsonObject m_secrets;
    bool m_isDamaged = false;
};

} // namespace vormel

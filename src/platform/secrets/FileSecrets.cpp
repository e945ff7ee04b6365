#include "platform/secrets/FileSecrets.h"

#include "platform/storage/FileWriter.h"
#include "platform/storage/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <sys/stat.h>

#include <utility>

namespace vormel {

namespace {

constexpr qint64 maxFileSize = qint64{16} * 1024 * 1024;
constexpr mode_t ownersFolder = 0700;
constexpr mode_t ownersFile = 0600;

/// False if others could still open it. Its parents are made as usual.
bool makePrivateFolder(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    const QByteArray name = QFile::encodeName(path);
    static_cast<void>(::mkdir(name.constData(), ownersFolder));
    return ::chmod(name.constData(), ownersFolder) == 0;
}

} // namespace

FileSecrets::FileSecrets(QString path, FileWriter& writer)
    : m_path(std::move(path))
    , m_writer(writer)
{
    read();
}

void FileSecrets::read()
{
    if (!QFileInfo::exists(m_path))
        return;
    // Whoever put it there may have put it there for all to read.
    if (QFileInfo(m_path).isFile())
        static_cast<void>(::chmod(QFile::encodeName(m_path).constData(), ownersFile));
    const std::optional<QByteArray> bytes = readWholeFile(m_path, maxFileSize);
    const QJsonDocument document = bytes ? QJsonDocument::fromJson(*bytes) : QJsonDocument();
    m_secrets = document.object();
    m_isDamaged = !document.isObject();
}

void FileSecrets::write()
{
    if (!makePrivateFolder(QFileInfo(m_path).path()))
        return;
    if (m_isDamaged && !keepUnreadableFile(m_path))
        return;
    m_isDamaged = false;
    m_writer.post(m_path, [secrets = m_secrets] { return QJsonDocument(secrets).toJson(QJsonDocument::Compact); });
}

QStringList FileSecrets::keys() const
{
    QStringList keys;
    for (auto secret = m_secrets.begin(); secret != m_secrets.end(); ++secret)
        if (secret->isString())
            keys << secret.key();
    return keys;
}

QCoro::Task<> FileSecrets::save(QString key, QString secret)
{
    m_secrets.insert(key, secret);
    write();
    co_return;
}

QCoro::Task<QString> FileSecrets::load(QString key)
{
    co_return m_secrets.value(key).toString();
}

QCoro::Task<> FileSecrets::remove(QString key)
{
    if (!m_secrets.contains(key))
        co_return;
    m_secrets.remove(key);
    write();
}

} // namespace vormel

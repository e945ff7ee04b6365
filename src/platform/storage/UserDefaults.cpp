#include "platform/storage/UserDefaults.h"

#include "platform/storage/FileWriter.h"
#include "platform/storage/WholeFile.h"

#include <QFileInfo>
#include <QJsonDocument>

namespace vormel {

namespace {

constexpr qint64 maxFileSize = qint64{16} * 1024 * 1024;

} // namespace

UserDefaults::UserDefaults(QString path, FileWriter& writer)
    : m_path(std::move(path))
    , m_writer(writer)
{
    load();
}

void UserDefaults::load()
{
    if (!QFileInfo::exists(m_path))
        return;
    const std::optional<QByteArray> bytes = readWholeFile(m_path, maxFileSize);
    const QJsonDocument document = bytes ? QJsonDocument::fromJson(*bytes) : QJsonDocument();
    if (document.isObject())
        m_values = document.object();
    else
        m_mayWrite = keepUnreadableFile(m_path);
}

std::optional<QJsonValue> UserDefaults::objectForKey(const QString& key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.constEnd() || found->isNull())
        return std::nullopt;
    return *found;
}

bool UserDefaults::boolForKey(const QString& key) const
{
    const QJsonValue value = m_values.value(key);
    if (value.isBool())
        return value.toBool();
    if (value.isDouble())
        return value.toDouble() != 0.0;
    const QString text = value.toString().toLower();
    return text == u"true" || text == u"yes" || text == u"1";
}

std::optional<QString> UserDefaults::stringForKey(const QString& key) const
{
    const QJsonValue value = m_values.value(key);
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

void UserDefaults::setBool(const QString& key, bool value)
{
    setObject(key, value);
}

void UserDefaults::setInteger(const QString& key, qint64 value)
{
    setObject(key, QJsonValue(value));
}

void UserDefaults::setObject(const QString& key, const QJsonValue& value)
{
    m_values.insert(key, value);
    if (!m_mayWrite)
        return;
    m_writer.post(m_path, [values = m_values] { return QJsonDocument(values).toJson(); });
}

} // namespace vormel

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <optional>

namespace vormel {

class FileWriter;

/// The user's preferences: typed values under keys, in one JSON file. Read once, at construction; each set takes effect
/// at once and is handed to the writer, which has it on disk within moments. UI thread only.
class UserDefaults
{
public:
    /// A file that cannot be understood is kept beside the new one and counts as empty; where it cannot be moved there,
    /// nothing is written. The writer must outlive this.
    UserDefaults(QString path, FileWriter& writer);

    /// The value as it was stored, of whatever type; nothing for a missing key, which is not the same as false or 0.
    [[nodiscard]] std::optional<QJsonValue> objectForKey(const QString& key) const;
    /// False for a missing key. A number counts as true unless it is 0, and so do the texts "true", "yes" and "1".
    [[nodiscard]] bool boolForKey(const QString& key) const;
    /// Nothing for a missing key and for a value that is no text.
    [[nodiscard]] std::optional<QString> stringForKey(const QString& key) const;

    void setBool(const QString& key, bool value);
    void setInteger(const QString& key, qint64 value);
    void setObject(const QString& key, const QJsonValue& value);

private:
    void load();

    QString m_path;
    FileWriter& m_writer;
    QJsonObject m_values;
    bool m_mayWrite = true;
};

} // namespace vormel

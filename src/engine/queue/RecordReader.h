#pragma once

#include "model/ItemId.h"
#include "text/Link.h"

#include <QString>

#include <rapidjson/document.h>

#include <optional>

namespace vormel {

/// The members of one record of the queue file as they are read; every getter that finds the wrong thing spoils the
/// record. The record must outlive the reader.
class RecordReader
{
public:
    explicit RecordReader(const rapidjson::Value& record);

    [[nodiscard]] bool isSound() const { return m_isSound; }

    /// Nothing where the member is missing or null.
    std::optional<QString> optionalText(const char* key);
    QString requiredText(const char* key);
    /// Texts that are shown are cut to what can be shown; one of ten megabytes would hold up the window.
    QString requiredShown(const char* key);
    QString optionalShown(const char* key);
    /// Finite.
    std::optional<double> optionalNumber(const char* key);
    double requiredNumber(const char* key);
    qint64 requiredInteger(const char* key);
    Link requiredLink(const char* key);
    std::optional<Link> optionalLink(const char* key);
    ItemId requiredId(const char* key);

private:
    [[nodiscard]] const rapidjson::Value* member(const char* key) const;
    Link linkFrom(const QString& text);

    template <typename T>
    T spoil()
    {
        m_isSound = false;
        return T();
    }

    const rapidjson::Value& m_record;
    bool m_isSound;
};

} // namespace vormel

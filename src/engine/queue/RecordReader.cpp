#include "engine/queue/RecordReader.h"

#include "text/FileName.h"

#include <QUuid>

#include <cmath>

namespace vormel {

using rapidjson::Value;

RecordReader::RecordReader(const Value& record)
    : m_record(record)
    , m_isSound(record.IsObject())
{}

const Value* RecordReader::member(const char* key) const
{
    if (!m_record.IsObject())
        return nullptr;
    const auto found = m_record.FindMember(key);
    return found == m_record.MemberEnd() || found->value.IsNull() ? nullptr : &found->value;
}

std::optional<QString> RecordReader::optionalText(const char* key)
{
    const Value* value = member(key);
    if (!value)
        return std::nullopt;
    if (!value->IsString())
        return spoil<std::optional<QString>>();
    return QString::fromUtf8(value->GetString(), static_cast<qsizetype>(value->GetStringLength()));
}

QString RecordReader::requiredText(const char* key)
{
    const std::optional<QString> value = optionalText(key);
    return value ? *value : spoil<QString>();
}

QString RecordReader::requiredShown(const char* key)
{
    return readableName(requiredText(key));
}

QString RecordReader::optionalShown(const char* key)
{
    return readableName(optionalText(key).value_or(QString()));
}

std::optional<double> RecordReader::optionalNumber(const char* key)
{
    const Value* value = member(key);
    if (!value)
        return std::nullopt;
    if (!value->IsNumber() || !std::isfinite(value->GetDouble()))
        return spoil<std::optional<double>>();
    return value->GetDouble();
}

double RecordReader::requiredNumber(const char* key)
{
    const std::optional<double> value = optionalNumber(key);
    return value ? *value : spoil<double>();
}

qint64 RecordReader::requiredInteger(const char* key)
{
    constexpr double firstTooLarge = 9.2e18;
    const Value* value = member(key);
    if (value && value->IsInt64())
        return value->GetInt64();
    if (!value || !value->IsDouble() || std::abs(value->GetDouble()) > firstTooLarge)
        return spoil<qint64>();
    const double number = value->GetDouble();
    return std::trunc(number) == number ? static_cast<qint64>(number) : spoil<qint64>();
}

Link RecordReader::requiredLink(const char* key)
{
    return linkFrom(requiredText(key));
}

std::optional<Link> RecordReader::optionalLink(const char* key)
{
    const std::optional<QString> value = optionalText(key);
    return value ? std::optional(linkFrom(*value)) : std::nullopt;
}

ItemId RecordReader::requiredId(const char* key)
{
    constexpr qsizetype uuidLength = 36;
    const QString value = requiredText(key);
    const QUuid uuid = value.size() == uuidLength ? QUuid::fromString(value) : QUuid();
    return uuid.isNull() ? spoil<ItemId>() : ItemId(uuid);
}

Link RecordReader::linkFrom(const QString& text)
{
    const std::optional<Link> link = Link::parse(text);
    return link ? *link : spoil<Link>();
}

} // namespace vormel

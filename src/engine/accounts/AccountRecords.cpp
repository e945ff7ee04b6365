#include "engine/accounts/AccountRecords.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace vormel {

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

void writeText(Writer& writer, const char* key, const QString& text)
{
    writer.Key(key);
    const QByteArray utf8 = text.toUtf8();
    writer.String(utf8.constData(), static_cast<rapidjson::SizeType>(utf8.size()));
}

std::optional<HostAccount> accountFrom(const QJsonObject& record, const HostProfiles& profiles)
{
    const QJsonValue username = record.value(u"username");
    const QJsonValue isEnabled = record.value(u"isEnabled");
    const std::optional<SupportedHost> host = profiles.hostOfKey(record.value(u"host").toString());
    const QUuid id = QUuid::fromString(record.value(u"id").toString());
    if (id.isNull() || !host || !username.isString() || !isEnabled.isBool())
        return std::nullopt;
    return HostAccount{id, *host, username.toString(), isEnabled.toBool()};
}

} // namespace

QByteArray encodeAccounts(const std::vector<HostAccount>& accounts, const HostProfiles& profiles)
{
    rapidjson::StringBuffer buffer;
    Writer writer(buffer);
    writer.StartArray();
    for (const HostAccount& account : accounts) {
        writer.StartObject();
        writeText(writer, "id", account.id.toString(QUuid::WithoutBraces).toUpper());
        writeText(writer, "host", profiles.rawValue(account.host));
        writeText(writer, "username", account.username);
        writer.Key("isEnabled");
        writer.Bool(account.isEnabled);
        writer.EndObject();
    }
    writer.EndArray();
    return {buffer.GetString(), static_cast<qsizetype>(buffer.GetSize())};
}

std::optional<std::vector<HostAccount>> decodeAccounts(const QByteArray& json, const HostProfiles& profiles)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return std::nullopt;
    std::vector<HostAccount> accounts;
    const QJsonArray records = document.array();
    for (const auto& record : records) {
        const std::optional<HostAccount> account = accountFrom(record.toObject(), profiles);
        if (!account)
            return std::nullopt;
        accounts.push_back(*account);
    }
    return accounts;
}

} // namespace vormel

#include "model/ServicesFile.h"

#include "model/ServicesClash.h"
#include "model/ServicesFields.h"
#include "model/ServicesJson.h"
#include "platform/storage/WholeFile.h"

#include <QFileInfo>

#include <algorithm>

namespace vormel {

namespace {

using Reason = ServicesProblem::Reason;

constexpr qint64 maxFileSize = qint64{64} * 1024;

/// Puts the entry's values where they belong.
std::optional<ServicesProblem> take(const ServicesEntry& entry, Services& services)
{
    const ServicesField* const field = servicesField(entry.key);
    if (!field)
        return ServicesProblem{Reason::unknownKey, entry.line, entry.key, {}};
    if (field->isList != entry.isList)
        return ServicesProblem{Reason::wrongType, entry.line, entry.key, {}};
    const std::span<QString> places = field->values(services);
    for (const ServicesEntry::Value& value : entry.values) {
        if (const auto reason = wrongForm(value.text, field->form))
            return ServicesProblem{*reason, value.line, entry.key, {}};
    }
    if (entry.values.size() != places.size())
        return ServicesProblem{Reason::wrongCount, entry.line, entry.key, QString::number(places.size())};
    std::transform(entry.values.begin(), entry.values.end(), places.begin(),
                   [](const ServicesEntry::Value& value) { return value.text; });
    return std::nullopt;
}

std::vector<int> valueLines(const ServicesEntry& entry)
{
    std::vector<int> lines;
    for (const ServicesEntry::Value& value : entry.values)
        lines.push_back(value.line);
    return lines;
}

std::optional<ServicesProblem> takeAll(const std::vector<ServicesEntry>& entries, Services& services)
{
    ServicesLines lines;
    for (const ServicesEntry& entry : entries) {
        if (lines.contains(entry.key))
            return ServicesProblem{Reason::repeatedKey, entry.line, entry.key, {}};
        if (auto problem = take(entry, services))
            return problem;
        lines.insert(entry.key, valueLines(entry));
    }
    return clashAmong(services, lines);
}

} // namespace

ServicesReading readServices(const QByteArray& bytes, const Services& builtIn)
{
    if (bytes.size() > maxFileSize)
        return {builtIn, ServicesProblem{Reason::tooLarge, 0, {}, {}}};
    const auto parsed = parseServicesJson(bytes);
    if (const auto* problem = std::get_if<ServicesProblem>(&parsed))
        return {builtIn, *problem};
    Services services = builtIn;
    if (auto problem = takeAll(std::get<std::vector<ServicesEntry>>(parsed), services))
        return {builtIn, std::move(problem)};
    return {std::move(services), std::nullopt};
}

ServicesReading readServicesFile(const QString& path, const Services& builtIn)
{
    const QFileInfo file(path);
    if (!file.exists() && !file.isSymLink())
        return {builtIn, std::nullopt};
    if (file.isFile() && file.size() > maxFileSize)
        return {builtIn, ServicesProblem{Reason::tooLarge, 0, {}, {}}};
    const std::optional<QByteArray> bytes = readWholeFile(path, maxFileSize);
    return bytes ? readServices(*bytes, builtIn) : ServicesReading{builtIn, ServicesProblem{}};
}

} // namespace vormel

#include "model/AppSettings.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

std::optional<bool> typed(const QJsonValue& value, bool /*type*/)
{
    if (value.isBool())
        return value.toBool();
    if (value.isDouble() && (value.toDouble() == 0.0 || value.toDouble() == 1.0))
        return value.toDouble() == 1.0;
    return std::nullopt;
}

std::optional<qint64> typed(const QJsonValue& value, qint64 /*type*/)
{
    constexpr double firstUnsafe = 9.2e18;
    if (!value.isDouble() || std::trunc(value.toDouble()) != value.toDouble() ||
        std::abs(value.toDouble()) > firstUnsafe)
        return std::nullopt;
    return value.toInteger();
}

std::optional<QString> typed(const QJsonValue& value, const QString& /*type*/)
{
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<AppLanguage> typed(const QJsonValue& value, AppLanguage /*type*/)
{
    return languageFromRawValue(value.toString());
}

template <typename T>
T startValue(const UserDefaults& store, const QString& key, T fallback, StartRead read)
{
    if constexpr (std::same_as<T, bool>) {
        if (read == StartRead::plain)
            return store.boolForKey(key);
    }
    const std::optional<QJsonValue> stored = store.objectForKey(key);
    const std::optional<T> value = stored ? typed(*stored, fallback) : std::nullopt;
    if constexpr (std::same_as<T, QString>) {
        if (read == StartRead::filled && value && value->isEmpty())
            return fallback;
    }
    return value.value_or(fallback);
}

template <typename T>
QJsonValue storedForm(const T& value)
{
    if constexpr (std::same_as<T, AppLanguage>)
        return rawValue(value);
    else
        return value;
}

} // namespace

template <typename T>
Setting<T>::Setting(AppSettings& owner, QString key, T fallback, StartRead read)
    : m_owner(owner)
    , m_key(std::move(key))
    , m_value(startValue(owner.m_store, m_key, std::move(fallback), read))
{}

template <typename T>
void Setting<T>::set(T value)
{
    m_value = std::move(value);
    m_owner.m_store.setObject(m_key, storedForm(m_value));
    Q_EMIT m_owner.changed();
    if constexpr (std::same_as<T, bool>) {
        if (this == &m_owner.downloadRevFiles)
            Q_EMIT m_owner.downloadRevFilesSet(m_value);
    } else if constexpr (std::same_as<T, qint64>) {
        if (this == &m_owner.maxDownloadSpeedKBps)
            Q_EMIT m_owner.maxDownloadSpeedSet();
    } else if constexpr (std::same_as<T, QString>) {
        if (this == &m_owner.downloadFolderPath)
            Q_EMIT m_owner.downloadFolderSet();
    } else if constexpr (std::same_as<T, AppLanguage>) {
        Q_EMIT m_owner.languageSet();
    }
}

template class Setting<bool>;
template class Setting<qint64>;
template class Setting<QString>;
template class Setting<AppLanguage>;

AppSettings::AppSettings(UserDefaults& store, const QString& downloadsFolder)
    : m_store(store)
    , autoExtract(*this, u"autoExtract"_s, true)
    , deleteArchiveAfterExtract(*this, u"deleteArchiveAfterExtract"_s, false, StartRead::plain)
    , trashSourceFolderAfterExtract(*this, u"trashSourceFolderAfterExtract"_s, false, StartRead::plain)
    , removeGroupAfterExtract(*this, u"removeGroupAfterExtract"_s, false, StartRead::plain)
    , downloadRevFiles(*this, u"downloadRevFiles"_s, false, StartRead::plain)
    , cleanExtractedNames(*this, u"cleanExtractedNames"_s, true)
    , extractedNamesDotsToSpaces(*this, u"extractedNamesDotsToSpaces"_s, false, StartRead::plain)
    , autoStartDownloads(*this, u"autoStartDownloads"_s, false, StartRead::plain)
    , maxConcurrentDownloads(*this, u"maxConcurrentDownloads"_s, 3)
    , maxDownloadSpeedKBps(*this, u"maxDownloadSpeedKBps"_s, 0)
    , downloadFolderPath(*this, u"downloadFolderPath"_s, downloadsFolder, StartRead::filled)
    , useCustomExtractionFolder(*this, u"useCustomExtractionFolder"_s, false, StartRead::plain)
    , extractionFolderPath(*this, u"extractionFolderPath"_s, downloadsFolder)
    , language(*this, u"appLanguage"_s, AppLanguage::english)
    , notifyWhenDone(*this, u"notifyWhenDone"_s, true)
    , keepAwake(*this, u"keepAwake"_s, true)
    , showLauncherProgress(*this, u"showLauncherProgress"_s, true)
    , watchClipboard(*this, u"watchClipboard"_s, false, StartRead::plain)
{}

std::optional<QString> AppSettings::effectiveExtractionFolder() const
{
    if (!useCustomExtractionFolder.value())
        return std::nullopt;
    return extractionFolderPath.value();
}

} // namespace vormel

#pragma once

#include "model/AppLanguage.h"
#include "model/DownloadPaths.h"
#include "platform/storage/UserDefaults.h"

#include <QObject>

#include <concepts>
#include <optional>

namespace vormel {

class AppSettings;

/// How the start value of a setting is read from the store.
enum class StartRead
{
    plain,        ///< as the store reads it; for a truth value, missing is false
    presenceTest, ///< the default unless a value of the right type is there
    filled,       ///< the same, and an empty text is none
};

/// One preference. Setting it tells the observers of AppSettings and writes the store, also when the value is the same.
template <typename T>
class Setting
{
public:
    Setting(AppSettings& owner, QString key, T fallback, StartRead read = StartRead::presenceTest);

    [[nodiscard]] const T& value() const { return m_value; }
    void set(T value);

private:
    AppSettings& m_owner;
    QString m_key;
    T m_value;
};

/// The user's preferences, read once from the store and written through at each change. Nothing is checked or clamped
/// here: what the store holds is what counts. UI thread only.
class AppSettings : public QObject
{
    Q_OBJECT

    template <typename T>
    friend class Setting;

    UserDefaults& m_store; // first, since the settings below read it as they are made

public:
    /// The store must outlive this. `downloadsFolder` is where both folders point until the user chooses.
    AppSettings(UserDefaults& store, const QString& downloadsFolder);

    Setting<bool> autoExtract;
    Setting<bool> deleteArchiveAfterExtract;
    Setting<bool> trashSourceFolderAfterExtract;
    Setting<bool> removeGroupAfterExtract;
    Setting<bool> downloadRevFiles;
    Setting<bool> cleanExtractedNames;
    Setting<bool> extractedNamesDotsToSpaces;
    Setting<bool> autoStartDownloads;
    Setting<qint64> maxConcurrentDownloads;
    Setting<qint64> maxDownloadSpeedKBps; ///< in 1024 bytes per second; 0 for no cap
    Setting<QString> downloadFolderPath;
    Setting<bool> useCustomExtractionFolder;
    Setting<QString> extractionFolderPath;
    Setting<AppLanguage> language;
    Setting<bool> notifyWhenDone;       ///< a word from the desktop when a set or file has ended behind another window
    Setting<bool> keepAwake;            ///< no sleep while bytes move or a tool runs
    Setting<bool> showLauncherProgress; ///< how far the queue is, on the launcher
    Setting<bool> watchClipboard;       ///< offer links that are copied elsewhere

    /// Where the files of the queue lie.
    [[nodiscard]] DownloadPaths paths() const { return DownloadPaths(downloadFolderPath.value()); }
    /// Where archives are extracted to; nothing means beside the archive. The path is not looked at.
    [[nodiscard]] std::optional<QString> effectiveExtractionFolder() const;

Q_SIGNALS:
    /// After any setting was set.
    void changed();
    void downloadRevFilesSet(bool value);
    void maxDownloadSpeedSet();
    void languageSet();
    void downloadFolderSet();
};

} // namespace vormel

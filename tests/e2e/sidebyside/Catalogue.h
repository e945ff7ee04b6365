#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

namespace vormel::e2e {

/// How a server gives a file away on its best days.
enum class Habit
{
    usual,
    withoutLength, ///< so that the total is never known
    withoutRanges, ///< always from the start
    pageFirst,     ///< the first request gets a web page
    dead,          ///< nothing but 404
};

/// One link, and what is behind it.
struct Offer
{
    QString address; ///< path and query on the server, percent-encoded
    QByteArray content;
    Habit habit = Habit::usual;
    QString toldName = {};     ///< what the server calls the file, if it does
    QString archive = {};      ///< the archive that it is, or is a volume of
    QByteArray alsoRight = {}; ///< what else may lie at the item's place in the end
};

/// What unpacking brings.
struct PackedArchive
{
    QString name; ///< of the set, or of the file
    QMap<QString, QByteArray> members;
    QString password = {};
};

/// Everything that is downloaded at once: plain files, archives of every format and sets, made by the real tools. Their
/// names and those of their members meet each other's and those of the bystanders.
class Catalogue
{
public:
    /// Packs the archives in that folder, which must be empty.
    explicit Catalogue(const QString& folder);

    [[nodiscard]] const std::vector<Offer>& offers() const { return m_offers; }
    [[nodiscard]] const QMap<QString, PackedArchive>& archives() const { return m_archives; }
    /// What could not be packed.
    [[nodiscard]] const QStringList& faults() const { return m_faults; }

private:
    void addPlainFiles();
    void addTwins();
    void addZips();
    void addOtherArchives();
    void addSets();
    void addHurtSet();
    Offer& addFile(const QString& name, qsizetype size, Habit habit = Habit::usual);
    /// Packs the members with a tool that takes these arguments, the archive and ".".
    void addArchive(const PackedArchive& archive, const QString& tool, const QStringList& args);
    void addLoneRar(const PackedArchive& archive);
    void addSet(const PackedArchive& archive, int volumeBytes, int recoveryVolumes = 0);
    void offerArchive(const PackedArchive& archive, const QByteArray& content);
    [[nodiscard]] QMap<QString, QByteArray> members(const QStringList& names);
    [[nodiscard]] QByteArray next(qsizetype size);

    QString m_folder;
    std::vector<Offer> m_offers;
    QMap<QString, PackedArchive> m_archives;
    QStringList m_faults;
    unsigned m_seed = 1;
};

} // namespace vormel::e2e

#pragma once

#include "e2e/sidebyside/Bystanders.h"
#include "e2e/sidebyside/Catalogue.h"
#include "e2e/sidebyside/HeldTools.h"
#include "e2e/sidebyside/MoodyServer.h"
#include "fixtures/EngineOnNetwork.h"

#include <QHash>
#include <QSet>

#include <random>

namespace vormel::e2e {

enum class Manner
{
    byDefault, ///< every setting as it comes
    tidy,      ///< unpacks into a folder of its own, throws away what is spent, and takes rows out
};

/// An engine with every link of a catalogue in its queue, paused, and bystanders around its files. Remembers which
/// archives were unpacked, and of what the user took something away.
class Scene
{
public:
    /// The catalogue must outlive this.
    Scene(const Catalogue& catalogue, Manner manner, unsigned seed);

    [[nodiscard]] DownloadManager& manager() { return m_engine.manager(); }
    [[nodiscard]] fixtures::ManualClock& clock() { return m_engine.clock; }
    [[nodiscard]] const HeldTools& tools() const { return m_tools; }
    [[nodiscard]] MoodyServer& server() { return m_server; }
    [[nodiscard]] const Catalogue& catalogue() const { return m_catalogue; }
    [[nodiscard]] Manner manner() const { return m_manner; }
    void restart(bool isKilled);
    /// Has other programs, which find all that this one had, work on its folders while it does not run.
    void handOver(const std::function<void()>& others);

    [[nodiscard]] const Offer& offerOf(const DownloadItem& item) const;
    /// The item that carries the state of an archive; none if it is not in the queue.
    [[nodiscard]] ItemPtr itemOf(const PackedArchive& archive);
    [[nodiscard]] bool isUnpacked(const PackedArchive& archive) const
    {
        return m_unpackedArchives.contains(archive.name);
    }
    /// The user takes this away, so nothing of it is promised any more.
    void giveUp(const DownloadItem& item);
    [[nodiscard]] bool isGivenUp(const Offer& offer) const;
    [[nodiscard]] bool isGivenUp(const PackedArchive& archive) const { return m_givenUp.contains(archive.name); }
    /// What rows were called when they were taken away. Of a paused one the part file stays.
    [[nodiscard]] const QSet<QString>& namesOfGivenUp() const { return m_namesOfGivenUp; }
    void renameGroup(const QString& id, const QString& name);
    /// The names that groups were given, as files can have them.
    [[nodiscard]] const QSet<QString>& customNames() const { return m_customNames; }
    /// Was its group ever given a name?
    [[nodiscard]] bool isRenamed(const PackedArchive& archive) const { return m_renamedGroups.contains(archive.name); }
    /// How often anything has changed in the queue.
    [[nodiscard]] int changes() const { return m_changes; }

    /// The user saves a file or a link somewhere among all the others.
    QString saveSomething(std::mt19937& random);
    /// What is not as the user left it, a line each.
    [[nodiscard]] QStringList harm() const;
    /// Is that file in the folder the user's?
    [[nodiscard]] bool isBystander(const QString& folder, const QByteArray& relative) const;

    [[nodiscard]] QString profile() const { return m_engine.sandbox.root(); }
    [[nodiscard]] QString downloads() const { return m_engine.sandbox.folders().downloads; }
    /// Another folder for what comes out of archives, where the manner is tidy.
    [[nodiscard]] QString extraction() const { return m_engine.sandbox.path(QStringLiteral("Unpacked")); }
    [[nodiscard]] QString trash() const { return m_engine.sandbox.path(QStringLiteral("Trash")); }

private:
    void settle(Manner manner);
    void watch();
    void addEverything();

    const Catalogue& m_catalogue;
    Manner m_manner;
    HeldTools m_tools;
    MoodyServer m_server;
    fixtures::EngineOnNetwork m_engine;
    Bystanders m_inDownloads;
    Bystanders m_inExtraction;
    DiskPicture m_beside; ///< of a folder that the program has no business in
    QHash<QString, const Offer*> m_byUrl;
    QSet<QString> m_unpackedArchives;
    QSet<QString> m_givenUp; ///< addresses of offers, names of archives
    QSet<QString> m_namesOfGivenUp;
    QSet<QString> m_customNames;
    QSet<QString> m_renamedGroups; ///< their ids
    int m_changes = 0;
};

} // namespace vormel::e2e

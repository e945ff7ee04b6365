#pragma once

#include "sites/PatternContent.h"
#include "text/Link.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace vormel::demo {

/// A film that one of the demo's servers has as a set of RAR volumes.
struct FilmSet
{
    struct Volume
    {
        QString name;
        std::string bytes;
        bool isRecovery = false;

        [[nodiscard]] std::string path() const { return '/' + name.toStdString(); }
    };

    QString host{};    ///< empty for one whose links only a container tells
    QString name;      ///< what all volumes are called, and the film in them
    QString cleanName; ///< what the film is to be called in the end
    sites::PatternContent film;
    qint64 volumeBytes = 0;
    int recoveryVolumes = 0;
    std::optional<std::size_t> spoilt{}; ///< the volume instead of which the server sends something else
    QString password{};                  ///< empty for none
    std::vector<Volume> volumes{};       ///< in order, recovery volumes last

    [[nodiscard]] QString filmName() const;
    [[nodiscard]] Link link(const Volume& volume) const;
    [[nodiscard]] std::vector<Link> links() const;
    /// At most, for the volumes, the film, and what is made anew.
    [[nodiscard]] qint64 bytesToCome() const;
};

/// The programs of this machine that the demo needs to make sets and to unpack them, of those that are missing.
[[nodiscard]] QStringList missingSetTools();

/// Has the machine's own packer make the volumes. False if it did not; what it needs of the folder is gone afterwards.
[[nodiscard]] bool pack(FilmSet& set, const QString& folder);

} // namespace vormel::demo

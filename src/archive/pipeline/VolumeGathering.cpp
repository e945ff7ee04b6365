#include "archive/pipeline/VolumeGathering.h"

#include "archive/workspace/FarMove.h"
#include "text/FileName.h"

#include <QFile>

#include <utility>

namespace vormel {

VolumeGathering::VolumeGathering(std::function<void()> save)
    : m_save(std::move(save))
{}

QCoro::Task<> VolumeGathering::gather(ReadyArchive archive, std::stop_token stop)
{
    const Lifetime::Watch lifetime = m_lifetime.watch();
    const QString folder = archive.path.chopped(lastComponent(archive.path).size());
    for (const ItemPtr& volume : archive.elsewhere) {
        const QString from = volume->localPath().value_or(QString());
        if (from.isEmpty()) // it was given up while others were moved
            continue;
        const QString to = folder + lastComponent(from);
        const auto move = [from, to, stop] { return moveFar(from, to, stop); };
        const int systemError = co_await m_background.run(move);
        if (lifetime.isOver())
            co_return;
        if (systemError == 0)
            volumeHasMoved(archive.elsewhere, from, to);
        if (stop.stop_requested())
            co_return;
    }
}

void VolumeGathering::volumeHasMoved(const std::vector<ItemPtr>& volumes, const QString& from, const QString& to)
{
    bool isKept = false;
    bool isUnwanted = false;
    for (const ItemPtr& volume : volumes) {
        if (volume->localPath() == from) // two links to one volume have one file
            volume->setLocalPath(to);
        isKept = isKept || volume->localPath() == to;
        isUnwanted = isUnwanted || (volume->isWantedAnew() && volume->filename() == lastComponent(to));
    }
    // Who had it is fetched again by now: it must not stand in the way of the one that comes.
    if (isUnwanted && !isKept)
        QFile::remove(to);
    m_save();
}

} // namespace vormel

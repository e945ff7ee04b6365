#pragma once

#include "archive/pipeline/ReadyArchive.h"
#include "platform/async/Background.h"
#include "platform/async/Lifetime.h"

#include <QCoroTask>

#include <functional>
#include <stop_token>

namespace vormel {

/// Brings the volumes of a set that lie in other folders to the first one, as the tools look for all of them there.
/// Replaces nothing: a volume whose place is taken stays where it is. UI thread only; the files move beside it.
class VolumeGathering
{
public:
    /// `save` keeps for good where a volume lies by now.
    explicit VolumeGathering(std::function<void()> save);

    QCoro::Task<> gather(ReadyArchive archive, std::stop_token stop);

private:
    void volumeHasMoved(const std::vector<ItemPtr>& volumes, const QString& from, const QString& to);

    std::function<void()> m_save;
    Background m_background;
    Lifetime m_lifetime;
};

} // namespace vormel

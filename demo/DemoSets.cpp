#include "demo/DemoSets.h"

using namespace Qt::StringLiterals;

namespace vormel::demo {

DemoSets plannedSets()
{
    constexpr qint64 mebibyte = qint64{1024} * 1024;
    return {.spoilt = {.host = u"films.example"_s,
                       .name = u"Holiday.Film.2024.1080p.WEB-DL.x264-DEMO"_s,
                       .cleanName = u"Holiday Film 2024.mkv"_s,
                       .film = sites::PatternContent(201, 34 * mebibyte),
                       .volumeBytes = 6 * mebibyte,
                       .recoveryVolumes = 2,
                       .spoilt = 2},
            .secret = {.host = u"private.example"_s,
                       .name = u"Surprise.Party.2026.720p.HDTV.x265-DEMO"_s,
                       .cleanName = u"Surprise Party 2026.mkv"_s,
                       .film = sites::PatternContent(202, 60 * mebibyte),
                       .volumeBytes = 25 * mebibyte,
                       .password = u"garden"_s},
            .premium = {.name = u"Harbour.Lights.2025.1080p.BluRay.x264-DEMO"_s,
                        .cleanName = u"Harbour Lights 2025.mkv"_s,
                        .film = sites::PatternContent(203, 40 * mebibyte),
                        .volumeBytes = 8 * mebibyte,
                        .recoveryVolumes = 2,
                        .spoilt = 3},
            .shared = {.name = u"Northern.Ferry.2026.1080p.WEB-DL.x265-DEMO"_s,
                       .cleanName = u"Northern Ferry 2026.mkv"_s,
                       .film = sites::PatternContent(204, 20 * mebibyte),
                       .volumeBytes = 8 * mebibyte}};
}

qint64 bytesToCome(const DemoSets& sets)
{
    return sets.spoilt.bytesToCome() + sets.secret.bytesToCome() + sets.premium.bytesToCome() +
           sets.shared.bytesToCome();
}

bool pack(DemoSets& sets, const QString& folder)
{
    return pack(sets.spoilt, folder) && pack(sets.secret, folder) && pack(sets.premium, folder) &&
           pack(sets.shared, folder);
}

} // namespace vormel::demo

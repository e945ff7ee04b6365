#include "demo/DemoSets.h"

namespace vormel::demo {

DemoSets plannedSets()
{
    constexpr qint64 mebibyte = qint64{1024} * 1024;
    return {.spoilt = {.host = QStringLiteral("films.example"),
                       .name = QStringLiteral("Holiday.Film.2024.1080p.WEB-DL.x264-DEMO"),
                       .cleanName = QStringLiteral("Holiday Film 2024.mkv"),
                       .film = sites::PatternContent(201, 34 * mebibyte),
                       .volumeBytes = 6 * mebibyte,
                       .recoveryVolumes = 2,
                       .spoilt = 2},
            .secret = {.host = QStringLiteral("private.example"),
                       .name = QStringLiteral("Surprise.Party.2026.720p.HDTV.x265-DEMO"),
                       .cleanName = QStringLiteral("Surprise Party 2026.mkv"),
                       .film = sites::PatternContent(202, 60 * mebibyte),
                       .volumeBytes = 25 * mebibyte,
                       .password = QStringLiteral("garden")}};
}

} // namespace vormel::demo

#include "Benchmarks.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "sites/NginxServer.h"

#include <QDir>
#include <QFile>

namespace vormel::bench {

namespace {

constexpr int fileCount = 2000;
constexpr int atOnce = 10;
constexpr qsizetype fileSize = 4096;
constexpr int rounds = 3;

Cost ours(const QStringList& urls)
{
    ProgramInProfile program;
    program.manager().settings().maxConcurrentDownloads.set(atOnce);
    return costOf([&program, &urls] { program.fetch(urls); });
}

Cost aria2(const QStringList& urls, const QDir& folder)
{
    QFile list(folder.filePath(QStringLiteral("list")));
    if (!list.open(QIODevice::WriteOnly))
        giveUp(QStringLiteral("cannot write the list of files"));
    list.write(urls.join(u'\n').toUtf8());
    list.close();
    QDir target(folder.filePath(QStringLiteral("fetched")));
    target.removeRecursively();
    return costOfProgram(QStringLiteral("aria2c"),
                         {QStringLiteral("-q"), QStringLiteral("-j%1").arg(atOnce), QStringLiteral("-d"), target.path(),
                          QStringLiteral("-i"), list.fileName()});
}

} // namespace

void benchSmallFiles(Report& report)
{
    report.note(QStringLiteral("%1 files of 4 KiB, %2 at a time, median of %3 runs in turns:")
                    .arg(fileCount)
                    .arg(atOnce)
                    .arg(rounds));
    const QTemporaryDir directory(scratchTemplate());
    const QDir folder(QDir(directory.path()).absolutePath());
    folder.mkpath(QStringLiteral("www"));
    const sites::NginxServer server({.folder = folder.filePath(QStringLiteral("nginx")).toStdString(),
                                     .documentRoot = folder.filePath(QStringLiteral("www")).toStdString()});
    QStringList urls;
    for (int i = 0; i < fileCount; ++i) {
        QFile file(folder.filePath(QStringLiteral("www/%1.bin").arg(i)));
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(fileSize, static_cast<char>(i))) != fileSize)
            giveUp(QStringLiteral("cannot write the files"));
        urls.append(QString::fromStdString(server.url("/" + std::to_string(i) + ".bin")));
    }
    std::vector<Cost> vormel;
    std::vector<Cost> other;
    for (int round = 0; round < rounds; ++round) {
        settleDisk();
        vormel.push_back(ours(urls));
        settleDisk();
        other.push_back(aria2(urls, folder));
    }
    report.note(QStringLiteral("  Vormel %1 s, aria2c %2 s")
                    .arg(median(vormel).wall, 0, 'f', 2)
                    .arg(median(other).wall, 0, 'f', 2));
    report.add(QStringLiteral("small_files_wall_vs_aria2c"), median(vormel).wall / median(other).wall, 1.0);
}

} // namespace vormel::bench

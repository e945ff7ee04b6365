#include "Benchmarks.h"
#include "Measure.h"
#include "ProgramInProfile.h"
#include "sites/NginxServer.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

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
    QFile list(folder.filePath(u"list"_s));
    if (!list.open(QIODevice::WriteOnly))
        giveUp(u"cannot write the list of files"_s);
    list.write(urls.join(u'\n').toUtf8());
    list.close();
    QDir target(folder.filePath(u"fetched"_s));
    target.removeRecursively();
    return costOfProgram(u"aria2c"_s,
                         {u"-q"_s, u"-j%1"_s.arg(atOnce), u"-d"_s, target.path(), u"-i"_s, list.fileName()});
}

} // namespace

void benchSmallFiles(Report& report)
{
    report.note(
        u"%1 files of 4 KiB, %2 at a time, median of %3 runs in turns:"_s.arg(fileCount).arg(atOnce).arg(rounds));
    const QTemporaryDir directory(scratchTemplate());
    const QDir folder(QDir(directory.path()).absolutePath());
    folder.mkpath(u"www"_s);
    const sites::NginxServer server(
        {.folder = folder.filePath(u"nginx"_s).toStdString(), .documentRoot = folder.filePath(u"www"_s).toStdString()});
    QStringList urls;
    for (int i = 0; i < fileCount; ++i) {
        QFile file(folder.filePath(u"www/%1.bin"_s.arg(i)));
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(fileSize, static_cast<char>(i))) != fileSize)
            giveUp(u"cannot write the files"_s);
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
    report.note(u"  Vormel %1 s, aria2c %2 s"_s.arg(median(vormel).wall, 0, 'f', 2).arg(median(other).wall, 0, 'f', 2));
    report.add(u"small_files_wall_vs_aria2c"_s, median(vormel).wall / median(other).wall, 1.0);
}

} // namespace vormel::bench

#include "demo/FilmSet.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace vormel::demo {

namespace {

constexpr QLatin1StringView packer("/usr/bin/rar");
constexpr QLatin1StringView unpacker("/usr/bin/unrar");

bool writeFilm(const QString& path, const sites::PatternContent& film)
{
    std::string bytes(static_cast<std::size_t>(film.size()), '\0');
    film.fill(0, bytes);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes.data(), film.size()) == film.size();
}

/// Stored as it is: noise does not get smaller.
QStringList packerArguments(const FilmSet& set, const QString& archive)
{
    QStringList arguments{u"a"_s, u"-idq"_s, u"-y"_s, u"-m0"_s, u"-v%1b"_s.arg(set.volumeBytes)};
    if (set.recoveryVolumes > 0)
        arguments << u"-rv%1"_s.arg(set.recoveryVolumes);
    if (!set.password.isEmpty())
        arguments << u"-p"_s + set.password;
    return arguments << archive << set.filmName();
}

bool runPacker(const QStringList& arguments, const QString& folder)
{
    constexpr int longest = 60'000;
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(packer, arguments, QIODevice::ReadOnly);
    return process.waitForFinished(longest) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

std::vector<FilmSet::Volume> volumesIn(const QDir& folder)
{
    std::vector<FilmSet::Volume> volumes;
    for (const QString& ending : {u"*.rar"_s, u"*.rev"_s}) {
        for (const QString& name : folder.entryList({ending}, QDir::Files, QDir::Name)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly))
                return {};
            volumes.push_back({name, file.readAll().toStdString(), name.endsWith(u".rev")});
        }
    }
    return volumes;
}

} // namespace

QString FilmSet::filmName() const
{
    return name + u".mkv"_s;
}

Link FilmSet::link(const Volume& volume) const
{
    return Link::parse(u"http://%1/%2"_s.arg(host, volume.name)).value();
}

std::vector<Link> FilmSet::links() const
{
    std::vector<Link> links;
    for (const Volume& volume : volumes)
        links.push_back(link(volume));
    return links;
}

qint64 FilmSet::bytesToCome() const
{
    return 3 * film.size() + recoveryVolumes * volumeBytes;
}

QStringList missingSetTools()
{
    QStringList missing;
    for (const QString program : {packer, unpacker}) {
        if (!QFileInfo(program).isExecutable())
            missing << QFileInfo(program).fileName();
    }
    return missing;
}

bool pack(FilmSet& set, const QString& folder)
{
    const QTemporaryDir scratch(QDir(folder).filePath(u"packing-XXXXXX"_s));
    const QDir made(scratch.filePath(u"made"_s));
    if (!scratch.isValid() || !QDir().mkpath(made.path()) || !writeFilm(scratch.filePath(set.filmName()), set.film))
        return false;
    const QString archive = made.filePath(set.name + u".rar"_s);
    if (!runPacker(packerArguments(set, archive), scratch.path()))
        return false;
    set.volumes = volumesIn(made);
    return !set.volumes.empty();
}

} // namespace vormel::demo

#include "Benchmarks.h"
#include "Measure.h"
#include "PatternFile.h"
#include "ProgramInProfile.h"
#include "SpliceClient.h"
#include "sites/NginxServer.h"
#include "sites/TestCertificates.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

using sites::NginxServer;
using sites::TestCertificates;

constexpr qint64 fileSize = qint64{1024} * 1024 * 1024;
constexpr int rounds = 5;

/// A large file behind a real server.
class Source
{
public:
    explicit Source(const TestCertificates* certificates = nullptr)
        : m_directory(scratchTemplate())
    {
        const QDir folder(QDir(m_directory.path()).absolutePath());
        folder.mkpath(u"www"_s);
        writePatternFile(folder.filePath(u"www/large.bin"_s), fileSize);
        NginxServer::Options options{.folder = folder.filePath(u"nginx"_s).toStdString(),
                                     .documentRoot = folder.filePath(u"www"_s).toStdString()};
        if (certificates) {
            options.tls = certificates->valid();
            m_authority = QString::fromStdString(certificates->writeAuthority(folder.path().toStdString()).string());
        }
        m_server.emplace(options);
    }

    [[nodiscard]] QString url() const { return QString::fromStdString(m_server->url("/large.bin")); }
    [[nodiscard]] quint16 port() const { return m_server->port(); }
    [[nodiscard]] const QString& authority() const { return m_authority; }
    [[nodiscard]] QString target() const { return QDir(m_directory.path()).absoluteFilePath(u"fetched"_s); }

private:
    QTemporaryDir m_directory;
    QString m_authority;
    std::optional<NginxServer> m_server;
};

/// One of the programs side by side; it leaves its file at the target.
struct Contender
{
    QString name;
    std::function<Cost()> run;
    std::vector<Cost> costs = {};
};

Cost ours(const Source& source)
{
    CurlHttpClient::Options network;
    network.extraCaFile = source.authority();
    ProgramInProfile program(network);
    return costOf([&program, &source] { program.fetch({source.url()}); });
}

void compare(std::vector<Contender>& contenders, const Source& source, const Report& report)
{
    // In turns, so that whatever else the machine does meets all of them.
    for (int round = 0; round < rounds; ++round) {
        for (Contender& contender : contenders) {
            QFile::remove(source.target());
            settleDisk();
            contender.costs.push_back(contender.run());
        }
    }
    for (const Contender& contender : contenders) {
        const Cost cost = median(contender.costs);
        report.note(
            u"  %1 %2 s wall, %3 s CPU"_s.arg(contender.name, -12).arg(cost.wall, 0, 'f', 2).arg(cost.cpu, 0, 'f', 2));
    }
}

Cost costOfNamed(const std::vector<Contender>& contenders, const QString& name)
{
    for (const Contender& contender : contenders) {
        if (contender.name == name)
            return median(contender.costs);
    }
    giveUp(name);
}

Contender curl(const Source& source)
{
    QStringList arguments{u"-s"_s, u"-o"_s, source.target(), source.url()};
    if (!source.authority().isEmpty())
        arguments = QStringList{u"--cacert"_s, source.authority(), u"--http1.1"_s} + arguments;
    return {u"curl"_s, [arguments] { return costOfProgram(u"curl"_s, arguments); }};
}

Contender wget(const Source& source)
{
    const QStringList arguments{u"-q"_s, u"-O"_s, source.target(), source.url()};
    return {u"wget"_s, [arguments] { return costOfProgram(u"wget"_s, arguments); }};
}

Contender aria2(const Source& source)
{
    const QFileInfo target(source.target());
    const QStringList arguments{u"-q"_s, u"-d"_s, target.path(), u"-o"_s, target.fileName(), source.url()};
    return {u"aria2c"_s, [arguments] { return costOfProgram(u"aria2c"_s, arguments); }};
}

Contender splice(const Source& source)
{
    return {u"splice"_s, [&source] {
                return costOf(
                    [&source] { spliceToFile(source.port(), "/large.bin", QFile::encodeName(source.target())); });
            }};
}

} // namespace

void benchTransfer(Report& report)
{
    report.note(u"One transfer of 1 GiB from nginx on loopback, median of %1 runs in turns:"_s.arg(rounds));
    const Source source;
    std::vector<Contender> contenders{
        {u"Vormel"_s, [&source] { return ours(source); }}, curl(source), wget(source), aria2(source), splice(source)};
    compare(contenders, source, report);
    const Cost vormel = costOfNamed(contenders, u"Vormel"_s);
    const auto wall = [&](const char* name) {
        return vormel.wall / costOfNamed(contenders, QLatin1StringView(name)).wall;
    };
    report.add(u"transfer_wall_vs_curl"_s, wall("curl"), 0.5);
    report.add(u"transfer_wall_vs_wget"_s, wall("wget"), 0.5);
    report.add(u"transfer_wall_vs_aria2c"_s, wall("aria2c"), 0.5);
    report.add(u"transfer_wall_vs_splice"_s, wall("splice"), 1.7);
    report.add(u"transfer_cpu_vs_curl"_s, vormel.cpu / costOfNamed(contenders, u"curl"_s).cpu, 0.5);
}

void benchTransferTls(Report& report)
{
    report.note(u"The same over TLS:"_s);
    const TestCertificates certificates;
    const Source source(&certificates);
    std::vector<Contender> contenders{{u"Vormel"_s, [&source] { return ours(source); }}, curl(source)};
    compare(contenders, source, report);
    const Cost vormel = costOfNamed(contenders, u"Vormel"_s);
    report.add(u"transfer_tls_wall_vs_curl"_s, vormel.wall / costOfNamed(contenders, u"curl"_s).wall, 0.5);
}

} // namespace vormel::bench

#include "Benchmarks.h"
#include "Measure.h"
#include "PatternFile.h"
#include "ProgramInProfile.h"
#include "SpliceClient.h"
#include "sites/NginxServer.h"
#include "sites/TestCertificates.h"

#include <QDir>
#include <QFile>

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
        folder.mkpath(QStringLiteral("www"));
        writePatternFile(folder.filePath(QStringLiteral("www/large.bin")), fileSize);
        NginxServer::Options options{.folder = folder.filePath(QStringLiteral("nginx")).toStdString(),
                                     .documentRoot = folder.filePath(QStringLiteral("www")).toStdString()};
        if (certificates) {
            options.tls = certificates->valid();
            m_authority = QString::fromStdString(certificates->writeAuthority(folder.path().toStdString()).string());
        }
        m_server.emplace(options);
    }

    [[nodiscard]] QString url() const { return QString::fromStdString(m_server->url("/large.bin")); }
    [[nodiscard]] quint16 port() const { return m_server->port(); }
    [[nodiscard]] const QString& authority() const { return m_authority; }
    [[nodiscard]] QString target() const
    {
        return QDir(m_directory.path()).absoluteFilePath(QStringLiteral("fetched"));
    }

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
        report.note(QStringLiteral("  %1 %2 s wall, %3 s CPU")
                        .arg(contender.name, -12)
                        .arg(cost.wall, 0, 'f', 2)
                        .arg(cost.cpu, 0, 'f', 2));
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
    QStringList arguments{QStringLiteral("-s"), QStringLiteral("-o"), source.target(), source.url()};
    if (!source.authority().isEmpty())
        arguments =
            QStringList{QStringLiteral("--cacert"), source.authority(), QStringLiteral("--http1.1")} + arguments;
    return {QStringLiteral("curl"), [arguments] { return costOfProgram(QStringLiteral("curl"), arguments); }};
}

Contender wget(const Source& source)
{
    const QStringList arguments{QStringLiteral("-q"), QStringLiteral("-O"), source.target(), source.url()};
    return {QStringLiteral("wget"), [arguments] { return costOfProgram(QStringLiteral("wget"), arguments); }};
}

Contender aria2(const Source& source)
{
    const QFileInfo target(source.target());
    const QStringList arguments{QStringLiteral("-q"), QStringLiteral("-d"), target.path(),
                                QStringLiteral("-o"), target.fileName(),    source.url()};
    return {QStringLiteral("aria2c"), [arguments] { return costOfProgram(QStringLiteral("aria2c"), arguments); }};
}

Contender splice(const Source& source)
{
    return {QStringLiteral("splice"), [&source] {
                return costOf(
                    [&source] { spliceToFile(source.port(), "/large.bin", QFile::encodeName(source.target())); });
            }};
}

} // namespace

void benchTransfer(Report& report)
{
    report.note(
        QStringLiteral("One transfer of 1 GiB from nginx on loopback, median of %1 runs in turns:").arg(rounds));
    const Source source;
    std::vector<Contender> contenders{{QStringLiteral("Vormel"), [&source] { return ours(source); }},
                                      curl(source),
                                      wget(source),
                                      aria2(source),
                                      splice(source)};
    compare(contenders, source, report);
    const Cost vormel = costOfNamed(contenders, QStringLiteral("Vormel"));
    const auto wall = [&](const char* name) {
        return vormel.wall / costOfNamed(contenders, QLatin1StringView(name)).wall;
    };
    report.add(QStringLiteral("transfer_wall_vs_curl"), wall("curl"), 0.5);
    report.add(QStringLiteral("transfer_wall_vs_wget"), wall("wget"), 0.5);
    report.add(QStringLiteral("transfer_wall_vs_aria2c"), wall("aria2c"), 0.5);
    report.add(QStringLiteral("transfer_wall_vs_splice"), wall("splice"), 1.7);
    report.add(QStringLiteral("transfer_cpu_vs_curl"), vormel.cpu / costOfNamed(contenders, QStringLiteral("curl")).cpu,
               0.5);
}

void benchTransferTls(Report& report)
{
    report.note(QStringLiteral("The same over TLS:"));
    const TestCertificates certificates;
    const Source source(&certificates);
    std::vector<Contender> contenders{{QStringLiteral("Vormel"), [&source] { return ours(source); }}, curl(source)};
    compare(contenders, source, report);
    const Cost vormel = costOfNamed(contenders, QStringLiteral("Vormel"));
    report.add(QStringLiteral("transfer_tls_wall_vs_curl"),
               vormel.wall / costOfNamed(contenders, QStringLiteral("curl")).wall, 0.5);
}

} // namespace vormel::bench

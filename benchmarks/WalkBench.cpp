#include "Benchmarks.h"
#include "Measure.h"
#include "ProcessTree.h"
#include "ProgramInProfile.h"
#include "sites/BrowserEnvironment.h"
#include "sites/services/TerabytezSite.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vormel::bench {

namespace {

using namespace std::chrono_literals;
using Shape = sites::TerabytezSite::Shape;

constexpr int starts = 5;
constexpr int laterWalks = 5; // of each start

/// A premium host whose pages want a browser, with a member, and what a program needs to reach it by its name.
class WalkWorld
{
public:
    WalkWorld()
        : m_authority(QString::fromStdString(m_certificates.writeAuthority(m_folder.path().toStdString()).string()))
    {
        m_site.addAccount("ann", "secret");
        m_switchboard.lead(m_site.connectTo());
        for (const auto& [name, value] :
             sites::browserEnvironment(m_folder.path().toStdString(), m_certificates, m_switchboard))
            m_environment.insert(QString::fromStdString(name), QString::fromStdString(value));
    }

    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }
    [[nodiscard]] sites::TerabytezSite& site() { return m_site; }
    [[nodiscard]] QString newFile(Shape shape)
    {
        constexpr qint64 size = qint64{64} * 1024;
        const int number = ++m_files;
        return QString::fromStdString(m_site.addFile("film." + std::to_string(number) + ".mkv", shape,
                                                     sites::PatternContent(static_cast<std::uint64_t>(number), size)));
    }
    /// Of a new program, with nothing learnt from an earlier one.
    [[nodiscard]] QStringList newProgram()
    {
        const QByteArray cookie = QByteArray::fromStdString(m_site.signIn("ann", "secret")).replace('=', '\t');
        const QByteArray expiry = QByteArray::number(QDateTime::currentDateTime().addDays(1).toSecsSinceEpoch());
        return {m_folder.filePath(u"profile%1"_s.arg(++m_programs)), QStringLiteral(VORMEL_WEB_PLUGIN), m_authority,
                u"127.0.0.1:%1"_s.arg(m_switchboard.port()),
                QString::fromUtf8("#HttpOnly_.terabytez.example\tTRUE\t/\tTRUE\t" + expiry + '\t' + cookie)};
    }

private:
    QTemporaryDir m_folder{QDir(scratchTemplate()).absolutePath()};
    sites::TestCertificates m_certificates;
    QString m_authority; ///< file
    sites::Switchboard m_switchboard;
    sites::TerabytezSite m_site{m_certificates};
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    int m_files = 0;
    int m_programs = 0;
};

/// A program of its own that walks to the files of links.
class Walker
{
public:
    explicit Walker(WalkWorld& world)
    {
        // The engine tells there at each start that it draws without a graphics card.
        m_process.setStandardErrorFile(u"build/bench/walk.log"_s, QIODevice::Append);
        m_process.setProcessEnvironment(world.environment());
        m_process.start(QStringLiteral(VORMEL_WALK_PROBE), world.newProgram());
        if (!m_process.waitForStarted())
            giveUp(m_process.errorString());
        turnFor(2s); // its window is painted, and it rests
    }
    Walker(const Walker&) = delete;
    Walker& operator=(const Walker&) = delete;
    ~Walker()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished())
            giveUp(u"the program does not end"_s);
    }

    void begin(const QString& link)
    {
        m_process.write(link.toUtf8() + '\n');
        m_process.waitForBytesWritten();
    }
    [[nodiscard]] bool isWalking() { return !m_process.canReadLine(); }
    /// In milliseconds.
    [[nodiscard]] double end()
    {
        turnUntil([this] { return !isWalking() || m_process.state() != QProcess::Running; });
        const QByteArray answer = m_process.readLine().trimmed();
        bool isTime = false;
        const double time = answer.toDouble(&isTime);
        if (!isTime)
            giveUp(u"a walk ended without an address: "_s + QString::fromUtf8(answer));
        return time;
    }
    [[nodiscard]] double walk(const QString& link)
    {
        begin(link);
        return end();
    }
    [[nodiscard]] ProcessTree processes() const { return ProcessTree(m_process.processId()); }

private:
    QProcess m_process;
};

double medianOf(const std::vector<double>& times)
{
    std::vector<Cost> costs;
    costs.reserve(times.size());
    for (const double time : times)
        costs.push_back({time, 0});
    return median(costs).wall;
}

void measureTimes(Report& report, WalkWorld& world)
{
    std::vector<double> first;
    std::vector<double> next;
    for (int start = 0; start < starts; ++start) {
        Walker walker(world);
        first.push_back(walker.walk(world.newFile(Shape::redirect)));
        for (int walk = 0; walk < laterWalks; ++walk)
            next.push_back(walker.walk(world.newFile(Shape::redirect)));
    }
    report.add(u"walk_first_ms"_s, medianOf(first));
    report.add(u"walk_next_ms"_s, medianOf(next));
}

void addMemory(Report& report, const QString& name, const ProcessTree& processes)
{
    if (const std::optional<double> memory = processes.pssMebibytes())
        report.add(name, *memory);
    else
        report.note(u"  No %1: the sandbox lets nobody look at the engine's memory."_s.arg(name));
}

void measureMemory(Report& report, WalkWorld& world)
{
    Walker walker(world);
    world.site().setCountdown(5s);
    const QString link = world.newFile(Shape::countdownBeforeForm);
    walker.begin(link);
    if (!world.site().pages().waitForRequests(QUrl(link).path().toStdString(), 1, 30s))
        giveUp(u"the walk did not begin"_s);
    turnFor(2s); // the page is shown and counts down
    const ProcessTree atWork = walker.processes();
    if (!walker.isWalking())
        giveUp(u"the walk ended too early, after %1 ms"_s.arg(walker.end()));
    if (atWork.renderers() == 0)
        giveUp(u"the walk has no process that shows a page"_s);
    addMemory(report, u"walk_pss_mib"_s, atWork);
    static_cast<void>(walker.end());
    turnFor(60s);
    addMemory(report, u"walk_after_pss_mib"_s, walker.processes());
    report.add(u"walk_after_renderers"_s, walker.processes().renderers(), 1);
}

} // namespace

void benchWalk(Report& report)
{
    if (!QFile::exists(QStringLiteral(VORMEL_WEB_PLUGIN))) {
        report.note(u"Walks through pages are left out: this build has no engine for them."_s);
        return;
    }
    report.note(
        u"Hidden walks through the pages of a premium host over https on this machine, median of %1 starts:"_s.arg(
            starts));
    try {
        WalkWorld world;
        measureTimes(report, world);
        measureMemory(report, world);
    } catch (const std::runtime_error& error) {
        giveUp(QString::fromUtf8(error.what()));
    }
}

} // namespace vormel::bench

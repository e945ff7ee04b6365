#include "RunningProgram.h"

#include "engine/queue/QueueRecords.h"
#include "fixtures/EventLoop.h"

#include <QDir>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel::fixtures {

namespace {

std::shared_ptr<const QueueRecord> pausedRecord(const QString& file)
{
    constexpr qint64 size = 5'000'000;
    DownloadItem item(*Link::parse(u"http://127.0.0.1:9/"_s + file), ItemId::make());
    item.setStatus(DownloadStatus::paused);
    item.setTotalBytes(size);
    return encodeRecord(item, DownloadPaths(QString()));
}

} // namespace

bool comesTrue(const std::function<bool()>& condition)
{
    return waitUntil([&condition] {
        while (g_main_context_iteration(nullptr, FALSE) != 0) {
        }
        return condition();
    });
}

RunningProgram::RunningProgram(const QStringList& files, const QByteArray& services)
{
    atspi_init();
    // The program asks for the bus of assistive technology once, so it has to be there before.
    static_cast<void>(Accessible::desktop().children());
    writeQueue(files);
    if (!services.isEmpty())
        m_sandbox.write(u"config/Vormel/services.json"_s, services);
    start(m_process);
}

RunningProgram::~RunningProgram()
{
    m_process.terminate();
    if (!m_process.waitForFinished())
        ADD_FAILURE() << "the program does not end";
}

void RunningProgram::writeQueue(const QStringList& files) const
{
    std::vector<std::shared_ptr<const QueueRecord>> records;
    for (const QString& file : files)
        records.push_back(pausedRecord(file));
    m_sandbox.write(u"data/Vormel/download_queue.json"_s, encodeQueue(records));
}

void RunningProgram::start(QProcess& process) const
{
    const QString runtime = m_sandbox.path(u"run"_s);
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    variables.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    variables.insert(u"HOME"_s, m_sandbox.root());
    variables.insert(u"XDG_DATA_HOME"_s, m_sandbox.path(u"data"_s));
    variables.insert(u"XDG_CONFIG_HOME"_s, m_sandbox.path(u"config"_s));
    variables.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    process.setProcessEnvironment(variables);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QStringLiteral(VORMEL_PROGRAM), QStringList());
}

bool RunningProgram::isUp()
{
    return comesTrue([this] {
        for (const Accessible& application : Accessible::desktop().children()) {
            if (application.processId() == m_process.processId() && application.childCount() > 0) {
                m_application = application;
                return true;
            }
        }
        return false;
    });
}

void RunningProgram::bringToFront() const
{
    QProcess second;
    start(second);
    if (!second.waitForFinished() || second.exitCode() != 0)
        ADD_FAILURE() << "the program does not come to the front";
}

Accessible RunningProgram::window(AtspiRole role, const QString& nameStart) const
{
    Accessible found;
    static_cast<void>(comesTrue([&] {
        for (const Accessible& window : m_application.children()) {
            if (window.role() == role && window.name().startsWith(nameStart))
                found = window;
        }
        return found.isThere();
    }));
    return found;
}

Accessible RunningProgram::list() const
{
    return m_application.find(ATSPI_ROLE_LIST, u"Downloads"_s);
}

Accessible RunningProgram::row(const QString& nameStart) const
{
    return list().find(ATSPI_ROLE_LIST_ITEM, nameStart);
}

} // namespace vormel::fixtures

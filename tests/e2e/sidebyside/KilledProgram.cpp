#include "e2e/sidebyside/KilledProgram.h"

#include "fixtures/EventLoop.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel::e2e {

KilledProgram::KilledProgram(Scene& scene, unsigned seed)
    : m_scene(scene)
    , m_random(seed)
{}

void KilledProgram::runAndKill()
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    // So that its Trash is the scene's.
    variables.insert(u"XDG_DATA_HOME"_s, m_scene.profile());
    QProcess program;
    program.setProcessEnvironment(variables);
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(VORMEL_ENGINE_PROCESS), {m_scene.profile(), u"0"_s, u"unpack"_s});
    constexpr unsigned longest = 500;
    const bool waitsForRun = m_random() % 2 == 0;
    const auto isTime = [&] {
        m_scene.server().release();
        return waitsForRun && isUnpacking();
    };
    (void)fixtures::waitUntil(isTime, std::chrono::milliseconds(m_random() % longest));
    program.kill();
    program.waitForFinished();
    if (isUnpacking())
        ++m_runsCutOff;
}

/// Is there a work folder?
bool KilledProgram::isUnpacking() const
{
    const QDir downloads(m_scene.downloads());
    const QStringList pattern{u".vormel-unpack-*"_s};
    const auto has = [&pattern](const QDir& folder) {
        QStringList found = folder.entryList(pattern, QDir::Dirs | QDir::Hidden);
        found.removeAll(u".vormel-unpack-mine"_s);
        return !found.isEmpty();
    };
    const QStringList below = downloads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return has(downloads) ||
           std::any_of(below.begin(), below.end(), [&](const QString& name) { return has(downloads.filePath(name)); });
}

} // namespace vormel::e2e

#include "demo/DemoProgram.h"

#include "app/MainWindow.h"
#include "app/Program.h"
#include "demo/DemoScript.h"
#include "demo/DiskEvidence.h"
#include "demo/DownloadsChapter.h"
#include "text/ByteCount.h"

#include <QApplication>
#include <QDir>
#include <QStorageInfo>
#include <QTimer>

#include <iostream>

namespace vormel::demo {

namespace {

using namespace std::chrono_literals;

constexpr qint64 capToWatchKBps = 20 * 1024; // the files then take about a quarter of a minute
constexpr auto timeToReadTheList = 2s;
constexpr auto timeToClose = 60s;

void print(const QString& line)
{
    std::cout << line.toStdString() << std::endl;
}

/// The window and all that has to happen for it to end in order, as in the program itself.
class Show
{
public:
    Show(const Folders& folders, const DemoSites& sites)
        : m_program(folders, sites.network())
        , m_window(m_program.manager())
    {
        QObject::connect(qApp, &QApplication::aboutToQuit, &m_window, [this] { m_program.manager().shutDown(); });
        m_window.show();
    }

    [[nodiscard]] DownloadManager& manager() { return m_program.manager(); }
    [[nodiscard]] MainWindow& window() { return m_window; }

private:
    Program m_program;
    MainWindow m_window;
};

void closeAndEnd(MainWindow& window)
{
    window.close();
    // A window that will not close must not hold up an unattended run.
    QTimer::singleShot(timeToClose, qApp, [] { QApplication::exit(EXIT_FAILURE); });
}

} // namespace

DemoProgram::DemoProgram()
    : m_folder(QDir::temp().filePath(QStringLiteral("vormel-demo-XXXXXX")))
    , m_folders(Folders::below(m_folder.path()))
{}

int DemoProgram::present()
{
    if (!hasRoom())
        return EXIT_FAILURE;
    introduce();
    Show show(m_folders, m_sites);
    show.manager().settings().maxDownloadSpeedKBps.set(capToWatchKBps);
    show.manager().addURLs(m_sites.links(), std::nullopt);
    QTimer::singleShot(timeToReadTheList, &show.window(), [&show] { show.manager().startAll(); });
    return QApplication::exec();
}

int DemoProgram::perform(const QString& output)
{
    if (!hasRoom())
        return EXIT_FAILURE;
    m_report.say(
        QStringLiteral("Playing with servers on 127.0.0.1 in %1; screenshots go to %2").arg(m_folder.path(), output));
    play(output);
    if (m_report.allHeld())
        checkNewStart();
    return m_report.conclude();
}

void DemoProgram::play(const QString& output)
{
    Show show(m_folders, m_sites);
    DownloadsChapter downloads({show.manager(), m_sites, m_folders});
    DemoScript script(downloads.steps(),
                      {show.window(), m_report, output, [&downloads] { return downloads.progress(); }});
    bool isPlayedToEnd = false;
    QObject::connect(&script, &DemoScript::ended, &show.window(), [&] {
        isPlayedToEnd = true;
        m_report.say(QStringLiteral("Closing the window"));
        closeAndEnd(show.window());
    });
    script.start();
    const int code = QApplication::exec();
    m_report.check(QStringLiteral("the window was closed at the end and the program ended with it in order"),
                   isPlayedToEnd && code == EXIT_SUCCESS ? QString() : QStringLiteral("it did not"));
    m_report.check(QStringLiteral("the queue file lists all items after that"),
                   objectionToStoredQueue(show.manager().queueFileURL(), m_sites.samples()));
}

void DemoProgram::checkNewStart()
{
    m_report.say(QStringLiteral("Starting the program anew"));
    Program program(m_folders, m_sites.network());
    const std::size_t restored = program.manager().items().size();
    m_report.check(QStringLiteral("a new start finds the whole queue again"),
                   restored == m_sites.samples().size() ? QString() : QStringLiteral("%1 items").arg(restored));
}

bool DemoProgram::hasRoom() const
{
    const qint64 needed = m_sites.bytesToCome() + m_sites.spareFile().content.size();
    const qint64 available = m_folder.isValid() ? QStorageInfo(m_folder.path()).bytesAvailable() : 0;
    if (available >= needed)
        return true;
    print(QStringLiteral("The demo needs %1 in %2, where %3 are free. Set TMPDIR to another folder.")
              .arg(byteCountText(needed), QDir::tempPath(), byteCountText(available)));
    return false;
}

void DemoProgram::introduce() const
{
    print(QStringLiteral(
              "Vormel with its queue filled: a large file whose connection is cut once in the middle, an archive,\n"
              "a set of five volumes and a link that fails. The speed is capped so that there is time to watch.\n"
              "Every address leads to the demo's own server on 127.0.0.1. To add a download yourself, press\n"
              "Add URLs, paste %1 and press Start All.\n"
              "The files lie in %2 until the window is closed, which ends the demo.")
              .arg(m_sites.spareFile().link().absoluteString(), m_folders.downloads));
}

} // namespace vormel::demo

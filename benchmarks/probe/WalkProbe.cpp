#include "app/MainWindow.h"
#include "app/Program.h"

#include <QApplication>
#include <QCoroTask>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTextStream>

#include <unistd.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

/// Adds each link that comes on standard input, and says on standard output how many milliseconds later the program
/// knew where its file is.
class Walks final : public QObject
{
public:
    explicit Walks(DownloadManager& manager)
        : m_manager(manager)
    {
        QObject::connect(&m_input, &QSocketNotifier::activated, this, [this] { walk(m_lines.readLine()); });
        QObject::connect(&m_manager, &DownloadManager::itemChanged, this, &Walks::look);
    }

private:
    void walk(const QString& line)
    {
        const std::optional<Link> link = Link::parse(line);
        if (!link)
            return QApplication::quit(); // the end of the input
        m_timer.start();
        m_manager.addURLs({*link}, std::nullopt);
        m_isWalking = true;
        look();
    }
    void look()
    {
        const DownloadItem& item = *m_manager.items().back();
        const bool hasFailed = item.status() == DownloadStatus::failed;
        if (!m_isWalking || (!hasFailed && !item.resolvedURL()))
            return;
        m_isWalking = false;
        if (hasFailed)
            m_answers << item.status().message() << Qt::endl;
        else
            m_answers << static_cast<double>(m_timer.nsecsElapsed()) / 1e6 << Qt::endl;
    }

    DownloadManager& m_manager;
    QTextStream m_lines{stdin};
    QTextStream m_answers{stdout};
    QSocketNotifier m_input{STDIN_FILENO, QSocketNotifier::Read};
    QElapsedTimer m_timer;
    bool m_isWalking = false;
};

int runProbe(const QStringList& arguments)
{
    CurlHttpClient::Options network;
    network.extraCaFile = arguments.at(3);
    for (const char* port : {":443", ":80"})
        network.connectTo.insert(port, arguments.at(4).toUtf8());
    Program program(Folders::below(arguments.at(1)), network, Program::Contacts(), arguments.at(2));
    program.viewPorts().web.addCookie(arguments.at(5).toUtf8());
    program.manager().settings().autoStartDownloads.set(true);
    QCoro::waitFor(
        program.manager().accounts().put({QUuid::createUuid(), SupportedHost::terabytez, u"ann"_s, true}, u"secret"_s));
    MainWindow window(program.viewPorts(), program.updater());
    window.show();
    const Walks walks(program.manager());
    const int code = QApplication::exec();
    program.manager().shutDown();
    return code;
}

} // namespace

} // namespace vormel

// The program as main() makes it. Arguments: a profile, the engine's plugin, whom to trust, where every name leads, and
// a cookie that signs in.
int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    return vormel::runProbe(QApplication::arguments());
}

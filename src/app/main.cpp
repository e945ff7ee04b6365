#include "app/CommandLine.h"
#include "app/LaterStarts.h"
#include "app/LinkFile.h"
#include "app/MainWindow.h"
#include "app/Program.h"
#include "app/SecondStart.h"
#include "app/ServicesAlert.h"
#include "app/WindowPlace.h"
#include "app/attention/DesktopAttention.h"
#include "app/update/UpdateNotice.h"
#include "config/Services.h"
#include "kit/ReadableStyle.h"
#include "platform/desktop/SingleInstance.h"
#include "platform/desktop/TerminationSignals.h"
#include "platform/desktop/Utf8Locale.h"
#include "platform/process/OpenFileLimit.h"
#include "ui/clipboard/Clipboard.h"
#include "ui/clipboard/ClipboardWatch.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

void nameProgram()
{
    QApplication::setApplicationName(u"vormel"_s);
    QApplication::setApplicationDisplayName(u"Vormel"_s);
    QApplication::setApplicationVersion(QString(vormel::programVersion));
    QApplication::setDesktopFileName(u"org.vormel.Vormel"_s);
}

/// What the launcher gave this start to let its window take the focus. The toolkit clears it, so it is read before.
QString activationToken()
{
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

constexpr int usageStatus = 2;

void print(std::FILE* stream, const QString& text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}

/// The links of the files, or nothing if one of them has none, which was told then.
std::optional<QStringList> linksOf(const QStringList& files)
{
    QStringList links;
    for (const QString& path : files) {
        const vormel::LinkFile file = vormel::readLinkFile(path);
        if (file.problem) {
            print(stderr, u"vormel: %1: %2\n"_s.arg(path, problemText(*file.problem).in(vormel::AppLanguage::english)));
            return std::nullopt;
        }
        for (const vormel::Link& link : file.links)
            links << link.absoluteString();
    }
    return links;
}

/// What the window is to open. Where there is none to be opened, or nothing to open, the status to end with.
std::variant<QStringList, int> addressesOf(const QStringList& arguments)
{
    const auto reading = vormel::readCommandLine(arguments);
    if (const auto* const error = std::get_if<vormel::UsageError>(&reading)) {
        print(stderr, u"vormel: %1\n"_s.arg(error->text) + vormel::usageLine());
        return usageStatus;
    }
    const auto& line = std::get<vormel::CommandLine>(reading);
    if (line.wish == vormel::CommandLine::Wish::showHelp) {
        print(stdout, vormel::helpText());
        return EXIT_SUCCESS;
    }
    if (line.wish == vormel::CommandLine::Wish::showVersion) {
        print(stdout, u"vormel %1\n"_s.arg(vormel::programVersion));
        return EXIT_SUCCESS;
    }
    const std::optional<QStringList> links = linksOf(line.files);
    if (!links)
        return EXIT_FAILURE;
    return line.addresses + *links;
}

QStringList textsOf(int count, char** arguments)
{
    QStringList texts;
    for (int i = 1; i < count; ++i)
        texts << QFile::decodeName(arguments[i]);
    return texts;
}

/// Where the bus of the whole machine is found, if nobody says otherwise.
QString systemBus()
{
    return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS", u"unix:path=/var/run/dbus/system_bus_socket"_s);
}

vormel::Program::Contacts contacts()
{
    return {QString(vormel::updateFeedUrl), QString(vormel::telemetryUrl),
            qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), systemBus()};
}

/// The engine of the pages lies beside the program where that was built, and elsewhere where it is installed.
QString webPlugin()
{
    const QDir programs(QApplication::applicationDirPath());
    const QString built = programs.filePath(u"../webengine/vormel-web.so"_s);
    return QDir::cleanPath(QFileInfo::exists(built) ? built : programs.filePath(QStringLiteral(VORMEL_WEB_PLUGIN)));
}

/// What a start ends with that found the program running; nothing if it is to be the program itself.
std::optional<int> statusOfSecond(vormel::SingleInstance& instance, const QStringList& addresses, const QString& token)
{
    using vormel::SecondStart;
    constexpr std::chrono::seconds patience(10);
    switch (vormel::settleSecondStart(instance, QDBusConnection::sessionBus(), addresses, token, patience)) {
    case SecondStart::handedOver:
        return EXIT_SUCCESS;
    case SecondStart::becameFirst:
        return std::nullopt;
    case SecondStart::tooMuch:
        print(stderr, u"vormel: too many links at once\n"_s);
        break;
    case SecondStart::unanswered:
        print(stderr, u"vormel: the running program does not answer\n"_s);
        break;
    }
    return EXIT_FAILURE;
}

void endInOrder(vormel::LaterStarts& starts, vormel::SingleInstance& instance, vormel::DownloadManager& manager)
{
    // Whoever starts it now waits for the end, and is the next one.
    starts.stopListening();
    instance.stopListening();
    manager.shutDown();
}

/// The whole life of the program that holds the lock.
int run(vormel::SingleInstance& instance, vormel::TerminationSignals& signalsOfTheSystem,
        const vormel::Folders& folders, const QStringList& addresses)
{
    vormel::CurlHttpClient::Options network;
    network.userAgent = "Vormel/" + QByteArray(vormel::programVersion.data());
    vormel::Program program(folders, network, contacts(), webPlugin());
    vormel::MainWindow window(program.viewPorts(), program.updater());
    const vormel::WindowPlace windowPlace(window, window.splitter(), program.defaults());
    const vormel::UpdateNotice updateNotice(program.updater(), program.manager().settings(), program.urlOpener(),
                                            window);

    vormel::LaterStarts starts({window, program.manager().settings(), program.viewPorts().notices}, instance);
    QObject::connect(&signalsOfTheSystem, &vormel::TerminationSignals::terminationRequested, qApp, &QApplication::quit);
    QObject::connect(qApp, &QApplication::aboutToQuit, &window,
                     [&] { endInOrder(starts, instance, program.manager()); });
    signalsOfTheSystem.listen();
    window.show();
    vormel::tellOfServices(program.servicesProblem(), program.manager().settings(), window);

    vormel::DesktopClipboard clipboard;
    const vormel::ClipboardWatch copies({clipboard, program.manager(), program.viewPorts().notices});
    QObject::connect(&copies, &vormel::ClipboardWatch::wanted, &window, &vormel::MainWindow::offerLinks);

    // The buses can wait until the window is there.
    QTimer::singleShot(0, &window, [&program] { program.followOutages(); });
    starts.listen(QDBusConnection::sessionBus());
    starts.open(addresses);
    const vormel::DesktopAttention attention(program.viewPorts(), {QDBusConnection::sessionBus(), systemBus()},
                                             [] { return QApplication::applicationState() == Qt::ApplicationActive; });
    QObject::connect(&attention, &vormel::DesktopAttention::itemWanted, &window, &vormel::MainWindow::showItem);
    QObject::connect(&attention, &vormel::DesktopAttention::showRequested, &starts, &vormel::LaterStarts::comeForward);
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) // NOLINT(bugprone-exception-escape): the variants hold what is taken out
{
    vormel::TerminationSignals signalsOfTheSystem; // before any thread is started
    vormel::ensureUtf8Locale();
    vormel::raiseOpenFileLimit();
    const std::variant<QStringList, int> wanted = addressesOf(textsOf(argc, argv));
    if (const int* const status = std::get_if<int>(&wanted))
        return *status;
    const QStringList& addresses = std::get<QStringList>(wanted);
    const QString token = activationToken();
    const QApplication application(argc, argv);
    QApplication::setStyle(new vormel::ReadableStyle); // the application takes it over
    nameProgram();

    const vormel::Folders folders = vormel::Folders::ofThisUser();
    vormel::SingleInstance instance(folders.runtime);
    if (!instance.isFirst()) {
        // It has nothing to put in order. Qt's thread of the buses may be at a message yet, and an end in order would
        // take away what it uses.
        if (const std::optional<int> status = statusOfSecond(instance, addresses, token))
            std::quick_exit(*status);
    }
    return run(instance, signalsOfTheSystem, folders, addresses);
}

#include "app/DesktopActivation.h"
#include "app/MainWindow.h"
#include "app/Program.h"
#include "app/ServicesAlert.h"
#include "app/WindowPlace.h"
#include "app/update/UpdateNotice.h"
#include "config/Services.h"
#include "kit/ReadableStyle.h"
#include "platform/desktop/SingleInstance.h"
#include "platform/desktop/TerminationSignals.h"
#include "platform/desktop/Utf8Locale.h"
#include "platform/process/OpenFileLimit.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

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

/// The toolkit's Wayland part takes a token from the environment when a window asks for the focus.
void comeForward(QWidget& window, const QString& token = {})
{
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    qunsetenv("XDG_ACTIVATION_TOKEN"); // never for child processes
}

/// True if the program that runs already was reached.
bool showRunning(const vormel::SingleInstance& instance, const QString& token)
{
    return vormel::DesktopActivation::askRunningToShow(QDBusConnection::sessionBus(), token) ||
           instance.askFirstToShow();
}

vormel::Program::Contacts contacts()
{
    return {QString(vormel::updateFeedUrl), QString(vormel::telemetryUrl),
            qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS")};
}

/// The engine of the pages lies beside the program where that was built, and elsewhere where it is installed.
QString webPlugin()
{
    const QDir programs(QApplication::applicationDirPath());
    const QString built = programs.filePath(u"../webengine/vormel-web.so"_s);
    return QDir::cleanPath(QFileInfo::exists(built) ? built : programs.filePath(QStringLiteral(VORMEL_WEB_PLUGIN)));
}

/// The whole life of the program that holds the lock.
int run(const vormel::SingleInstance& instance, vormel::TerminationSignals& signalsOfTheSystem,
        const vormel::Folders& folders)
{
    vormel::CurlHttpClient::Options network;
    network.userAgent = "Vormel/" + QByteArray(vormel::programVersion.data());
    vormel::Program program(folders, network, contacts(), webPlugin());
    vormel::MainWindow window(program.viewPorts(), program.updater());
    const vormel::WindowPlace windowPlace(window, window.splitter(), program.defaults());
    const vormel::UpdateNotice updateNotice(program.updater(), program.manager().settings(), program.urlOpener(),
                                            window);

    QObject::connect(&instance, &vormel::SingleInstance::showRequested, &window, [&window] { comeForward(window); });
    QObject::connect(&signalsOfTheSystem, &vormel::TerminationSignals::terminationRequested, qApp, &QApplication::quit);
    QObject::connect(qApp, &QApplication::aboutToQuit, &window, [&program] { program.manager().shutDown(); });
    signalsOfTheSystem.listen();
    window.show();
    vormel::tellOfServices(program.servicesProblem(), program.manager().settings(), window);

    // The buses can wait until the window is there.
    QTimer::singleShot(0, &window, [&program] { program.followOutages(QDBusConnection::systemBus()); });
    const vormel::DesktopActivation activation(QDBusConnection::sessionBus());
    QObject::connect(&activation, &vormel::DesktopActivation::showRequested, &window,
                     [&window](const QString& token) { comeForward(window, token); });
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    vormel::TerminationSignals signalsOfTheSystem; // before any thread is started
    vormel::ensureUtf8Locale();
    vormel::raiseOpenFileLimit();
    const QString token = activationToken();
    const QApplication application(argc, argv);
    QApplication::setStyle(new vormel::ReadableStyle); // the application takes it over
    nameProgram();

    const vormel::Folders folders = vormel::Folders::ofThisUser();
    const vormel::SingleInstance instance(folders.runtime);
    if (!instance.isFirst())
        return showRunning(instance, token) ? EXIT_SUCCESS : EXIT_FAILURE;
    return run(instance, signalsOfTheSystem, folders);
}

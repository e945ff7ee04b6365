#include "app/MainWindow.h"
#include "app/Program.h"
#include "config/Services.h"
#include "platform/desktop/SingleInstance.h"
#include "platform/desktop/TerminationSignals.h"
#include "platform/desktop/Utf8Locale.h"

#include <QApplication>

namespace {

void nameProgram()
{
    QApplication::setApplicationName(QStringLiteral("vormel"));
    QApplication::setApplicationDisplayName(QStringLiteral("Vormel"));
    QApplication::setApplicationVersion(QString(vormel::programVersion));
    QApplication::setDesktopFileName(QStringLiteral("org.vormel.Vormel"));
}

void comeForward(QWidget& window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

int main(int argc, char** argv)
{
    vormel::TerminationSignals signalsOfTheSystem; // before any thread is started
    vormel::ensureUtf8Locale();
    const QApplication application(argc, argv);
    nameProgram();

    const vormel::Folders folders = vormel::Folders::ofThisUser();
    const vormel::SingleInstance instance(folders.runtime);
    if (!instance.isFirst())
        return instance.askFirstToShow() ? EXIT_SUCCESS : EXIT_FAILURE;

    vormel::CurlHttpClient::Options network;
    network.userAgent = "Vormel/" + QByteArray(vormel::programVersion.data());
    vormel::Program program(folders, network);
    vormel::MainWindow window(program.viewPorts());

    QObject::connect(&instance, &vormel::SingleInstance::showRequested, &window, [&window] { comeForward(window); });
    QObject::connect(&signalsOfTheSystem, &vormel::TerminationSignals::terminationRequested, &application,
                     &QApplication::quit);
    QObject::connect(&application, &QApplication::aboutToQuit, &window, [&program] { program.manager().shutDown(); });
    signalsOfTheSystem.listen();

    window.show();
    return QApplication::exec();
}

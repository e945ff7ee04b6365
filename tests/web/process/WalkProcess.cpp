#include "app/Program.h"
#include "platform/desktop/TerminationSignals.h"
#include "platform/desktop/Utf8Locale.h"

#include <QApplication>

/// The program over the folders below its argument, as its main() runs it, but without a window: starts what is in the
/// queue, and goes on until a signal ends it.
int main(int argc, char** argv)
{
    vormel::TerminationSignals signalsOfTheSystem; // before any thread is started
    vormel::ensureUtf8Locale();
    const QApplication application(argc, argv);
    vormel::Program program(vormel::Folders::below(QApplication::arguments().at(1)), {}, {},
                            QStringLiteral(VORMEL_WEB_PLUGIN));
    QObject::connect(&signalsOfTheSystem, &vormel::TerminationSignals::terminationRequested, qApp, &QApplication::quit);
    QObject::connect(qApp, &QApplication::aboutToQuit, &program.manager(),
                     [&program] { program.manager().shutDown(); });
    signalsOfTheSystem.listen();
    program.manager().commands().startAll();
    return QApplication::exec();
}

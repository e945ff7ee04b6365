#include "config/Services.h"
#include "demo/BrowserWorld.h"
#include "demo/DemoProgram.h"
#include "kit/ReadableStyle.h"
#include "platform/desktop/TerminationSignals.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTemporaryDir>

#include <iostream>

using namespace Qt::StringLiterals;

namespace {

/// A proxy of the user's would be asked for the demo's addresses, which only the demo's own server knows.
void forgetProxies()
{
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY"})
        qunsetenv(name);
}

/// What the program throws away is not to come into the user's own Trash, nor to be left behind in that of the disk.
void liveIn(const QString& folder)
{
    if (!qEnvironmentVariableIsSet("XAUTHORITY"))
        qputenv("XAUTHORITY", QFile::encodeName(QDir::home().filePath(u".Xauthority"_s)));
    qputenv("HOME", QFile::encodeName(folder));
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder));
}

void nameProgram()
{
    QApplication::setApplicationName(u"vormel-demo"_s);
    QApplication::setApplicationDisplayName(u"Vormel"_s);
    QApplication::setApplicationVersion(QString(vormel::programVersion));
    QApplication::setDesktopFileName(u"org.vormel.Vormel"_s);
}

struct Wishes
{
    bool isUnattended = false;
    QString output;
};

Wishes readCommandLine()
{
    const QCommandLineOption unattended(u"unattended"_s,
                                        u"Play without a person, check everything and end by itself."_s);
    const QCommandLineOption output(u"output"_s, u"Where unattended screenshots go."_s, u"folder"_s,
                                    QDir::currentPath());
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Shows Vormel at work on servers of its own on this computer."_s);
    parser.addHelpOption();
    parser.addOptions({unattended, output});
    parser.process(*QCoreApplication::instance());
    return {parser.isSet(unattended), parser.value(output)};
}

int perform(vormel::demo::DemoProgram& demo, const QString& output)
{
    if (QDir().mkpath(output))
        return demo.perform(output, qEnvironmentVariable("CI") == u"true");
    std::cerr << "The folder cannot be made: " << output.toStdString() << std::endl;
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char** argv)
{
    forgetProxies();
    const QTemporaryDir home(QDir::temp().filePath(u"vormel-demo-XXXXXX"_s));
    liveIn(home.path());
    vormel::TerminationSignals signalsOfTheSystem; // before any thread is started
    vormel::demo::BrowserWorld world(home.path());
    const QApplication application(argc, argv);
    QApplication::setStyle(new vormel::ReadableStyle); // as the program does
    nameProgram();
    QObject::connect(&signalsOfTheSystem, &vormel::TerminationSignals::terminationRequested, &application,
                     &QApplication::quit);
    signalsOfTheSystem.listen();
    const Wishes wishes = readCommandLine();
    vormel::demo::DemoProgram demo({home.path(), home.filePath(u"Trash/files"_s)}, world);
    return wishes.isUnattended ? perform(demo, wishes.output) : demo.present();
}

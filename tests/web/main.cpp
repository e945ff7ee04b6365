#include "WebWorld.h"
#include "kit/ReadableStyle.h"
#include "platform/desktop/Utf8Locale.h"
#include "sites/BrowserEnvironment.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

vormel::fixtures::WebWorld* worldOfThisProcess = nullptr;

} // namespace

vormel::fixtures::WebWorld& vormel::fixtures::webWorld()
{
    return *worldOfThisProcess;
}

int main(int argc, char** argv)
{
    vormel::ensureUtf8Locale();
    const QTemporaryDir folder;
    // The engine writes into a profile for a moment longer than a test lasts; what it leaves goes with this folder.
    QDir(folder.path()).mkdir(u"tmp"_s);
    qputenv("TMPDIR", folder.filePath(u"tmp"_s).toUtf8());
    vormel::fixtures::WebWorld world;
    worldOfThisProcess = &world;
    vormel::sites::setEnvironment(
        vormel::sites::browserEnvironment(folder.path().toStdString(), world.certificates, world.switchboard));

    const QApplication application(argc, argv);
    QApplication::setStyle(new vormel::ReadableStyle); // as the program does
    ::testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

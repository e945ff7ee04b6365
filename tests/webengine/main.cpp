#include "EngineWorld.h"
#include "platform/desktop/Utf8Locale.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    vormel::ensureUtf8Locale();
    ::testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::AddGlobalTestEnvironment(new vormel::EngineWorld); // owned by the library
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

#include "kit/ReadableStyle.h"

#include <QApplication>

#include <gmock/gmock.h>

// These tests show windows, so they need more of Qt than the other programs do. No screen is needed.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(new vormel::ReadableStyle); // as the program does
    ::testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

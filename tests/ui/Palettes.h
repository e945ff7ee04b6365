#pragma once

#include <QPalette>

namespace vormel::fixtures {

[[nodiscard]] inline QPalette darkPalette()
{
    QPalette palette(QColor(0x33, 0x36, 0x3b), QColor(0x24, 0x26, 0x2a));
    palette.setColor(QPalette::Base, QColor(0x1b, 0x1d, 0x20));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::ButtonText, Qt::white);
    return palette;
}

[[nodiscard]] inline QPalette lightPalette()
{
    QPalette palette(QColor(0xef, 0xef, 0xef), QColor(0xef, 0xef, 0xef));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::ButtonText, Qt::black);
    return palette;
}

} // namespace vormel::fixtures

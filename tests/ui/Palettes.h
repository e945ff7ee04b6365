#pragma once

#include <QColor>
#include <QPalette>

namespace vormel::fixtures {

/// As Qt's own style has it, with a highlight on which its white text is hard to read.
[[nodiscard]] inline QPalette lightPalette()
{
    QPalette palette(QColor(0xef, 0xef, 0xef), QColor(0xef, 0xef, 0xef));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(0x30, 0x8c, 0xc6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

/// With Qt's default highlight, which is darker than most of what it lies on.
[[nodiscard]] inline QPalette darkPalette()
{
    QPalette palette(QColor(0x33, 0x36, 0x3b), QColor(0x24, 0x26, 0x2a));
    palette.setColor(QPalette::Base, QColor(0x1b, 0x1d, 0x20));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::ButtonText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x00, 0x00, 0x80));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

/// With a highlight so bright that its text is black.
[[nodiscard]] inline QPalette brightHighlightPalette()
{
    QPalette palette = darkPalette();
    palette.setColor(QPalette::Highlight, QColor(0xff, 0xd5, 0x4f));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    return palette;
}

/// With a highlight that is too pale for its white text.
[[nodiscard]] inline QPalette paleHighlightPalette()
{
    QPalette palette = darkPalette();
    palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    return palette;
}

[[nodiscard]] inline QList<QPalette> allPalettes()
{
    return {lightPalette(), darkPalette(), brightHighlightPalette(), paleHighlightPalette()};
}

} // namespace vormel::fixtures

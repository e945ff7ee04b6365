#include "kit/TextStyle.h"

#include <QFontDatabase>
#include <QFontMetrics>

#include <algorithm>

namespace vormel {

QFont scaledFont(QFont font, double factor)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(qMax(1, qRound(font.pixelSize() * factor)));
    return font;
}

QFont headlineFont(QFont font)
{
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont captionFont(const QFont& font)
{
    return scaledFont(font, 0.9);
}

QFont boldCaptionFont(const QFont& font)
{
    QFont bold = captionFont(font);
    bold.setBold(true);
    return bold;
}

QFont digitsFont(const QFont& font)
{
    const QFontMetrics metrics(font);
    const QStringView others = u"023456789";
    const bool isEven = std::all_of(others.begin(), others.end(), [&metrics](QChar digit) {
        return metrics.horizontalAdvance(digit) == metrics.horizontalAdvance(u'1');
    });
    if (isEven)
        return font;
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (font.pointSizeF() > 0)
        fixed.setPointSizeF(font.pointSizeF());
    else
        fixed.setPixelSize(font.pixelSize());
    return fixed;
}

QFont titleFont(const QFont& font)
{
    QFont title = scaledFont(font, 1.35);
    title.setBold(true);
    return title;
}

} // namespace vormel

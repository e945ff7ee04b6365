#pragma once

#include "model/AppLanguage.h"
#include "ui/kit/Glyph.h"
#include "ui/kit/Theme.h"

#include <QList>

namespace vormel {

/// One thing that the program can do.
struct HelpFeature
{
    Glyph icon;
    Tint color;
    QString title;
    QString detail;
};

/// All that the help window tells about, in its order.
[[nodiscard]] QList<HelpFeature> helpFeatures(AppLanguage language);

} // namespace vormel

#pragma once

#include "kit/Glyph.h"
#include "kit/Theme.h"
#include "model/AppLanguage.h"

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

/// All that the help window tells about, in its order; with the domain of Filestore.
[[nodiscard]] QList<HelpFeature> helpFeatures(AppLanguage language, const QString& filestore);

} // namespace vormel

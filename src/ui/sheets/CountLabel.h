#pragma once

#include "kit/Glyph.h"
#include "kit/Theme.h"

#include <QWidget>

namespace vormel {

class StyledLabel;

/// An icon with a short text beside it.
class CountLabel final : public QWidget
{
    Q_OBJECT

public:
    CountLabel(Glyph glyph, Tint tint, const QString& name, QWidget* parent = nullptr);

    void setText(const QString& text);

private:
    StyledLabel* m_text;
};

} // namespace vormel

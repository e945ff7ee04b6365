#pragma once

#include "kit/Glyph.h"
#include "kit/Theme.h"

#include <QWidget>

namespace vormel {

/// Shows one glyph, tinted anew at each painting; decoration only, hence silent for assistive technology.
class GlyphLabel final : public QWidget
{
    Q_OBJECT

public:
    GlyphLabel(Glyph glyph, Tint tint, int size, QWidget* parent = nullptr);

    void setLook(Glyph glyph, Tint tint);

    [[nodiscard]] QSize sizeHint() const override { return {m_size, m_size}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Glyph m_glyph;
    Tint m_tint;
    int m_size;
};

} // namespace vormel

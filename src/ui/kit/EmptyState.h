#pragma once

#include "ui/kit/Glyph.h"

#include <QWidget>

namespace vormel {

class StyledLabel;

/// What a page shows while there is nothing on it: a large icon, a title, and what to do about it.
class EmptyState final : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyState(Glyph glyph, QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& text);

private:
    StyledLabel* m_title;
    StyledLabel* m_text;
};

} // namespace vormel

#pragma once

#include "kit/Glyph.h"

#include <QWidget>

namespace vormel {

class StyledLabel;

/// What a page shows while there is nothing on it: a large icon, a title, and what to do about it.
class EmptyState final : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyState(Glyph glyph, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    void setText(const QString& text);

private:
    StyledLabel* m_title;
    StyledLabel* m_text;
};

} // namespace vormel

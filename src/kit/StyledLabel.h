#pragma once

#include "kit/Theme.h"

#include <QLabel>

namespace vormel {

/// A label in one of the theme's colours and one of the text styles. Both are read again when palette or font change.
class StyledLabel : public QLabel
{
    Q_OBJECT

public:
    enum class Style
    {
        body,
        headline,
        caption,
        boldCaption,
        digits, ///< a caption whose figures stand still while they change
        title,
    };

    explicit StyledLabel(Style style, Tint tint = Tint::text, QWidget* parent = nullptr);

    void setTint(Tint tint);

protected:
    bool event(QEvent* event) override;

private:
    void restyle();

    Style m_style;
    Tint m_tint;
    bool m_isRestyling = false;
};

} // namespace vormel

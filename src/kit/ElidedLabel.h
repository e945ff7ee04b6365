#pragma once

#include "kit/StyledLabel.h"

namespace vormel {

/// A text on one line. Of what does not fit the middle is left out; then the whole text is the tool tip.
class ElidedLabel final : public StyledLabel
{
    Q_OBJECT

public:
    using StyledLabel::StyledLabel;

    void setWhole(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showWhatFits();

    QString m_whole;
};

} // namespace vormel

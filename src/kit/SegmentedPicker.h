#pragma once

#include <QWidget>

class QButtonGroup;

namespace vormel {

/// A few choices side by side of which one is taken: joined buttons that are worked like radio buttons.
class SegmentedPicker final : public QWidget
{
    Q_OBJECT

public:
    SegmentedPicker(const QStringList& choices, QWidget* parent);

    [[nodiscard]] int chosen() const;
    /// Tells nobody.
    void choose(int index);

Q_SIGNALS:
    void picked(int index); ///< by the user

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QButtonGroup* m_group;
};

} // namespace vormel

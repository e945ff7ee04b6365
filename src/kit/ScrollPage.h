#pragma once

#include <QScrollArea>

namespace vormel {

/// A page of parts one below the other, in the middle of the window, that scrolls up and down. What the keyboard works
/// on is kept in sight.
class ScrollPage : public QScrollArea
{
    Q_OBJECT

public:
    ScrollPage(int widest, QWidget* parent);

    /// The parent of the parts.
    [[nodiscard]] QWidget* column() const { return m_column; }
    /// Below those that were added before, from the top down.
    void addPart(QWidget* part);

private:
    QWidget* m_column;
};

} // namespace vormel

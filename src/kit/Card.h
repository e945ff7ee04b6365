#pragma once

#include "model/AppLanguage.h"

#include <QGroupBox>

class QVBoxLayout;

namespace vormel {

class AppSettings;

/// A group of a page: perhaps a heading, and under it a card with one row below the other, hairlines between those that
/// are shown. The heading follows the language of the settings, which must outlive it.
class Card : public QGroupBox
{
    Q_OBJECT

public:
    /// What rows leave free at their end, where switches have the room for the ring of the focus.
    static constexpr int endOfRow = 3;

    Card(const AppSettings& settings, const QString& name, const TextPair& heading, QWidget* parent);
    /// Without a heading.
    Card(const QString& name, QWidget* parent);

    void addRow(QWidget* row);
    /// In front of the row that has this place by then; the last one if none has. Also moves a row of this card.
    void insertRow(int place, QWidget* row);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void makeRoomForHeading();
    [[nodiscard]] QFont headingFont() const;
    [[nodiscard]] QRect card() const;

    QVBoxLayout* m_rows;
};

} // namespace vormel

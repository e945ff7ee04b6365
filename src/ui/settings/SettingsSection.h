#pragma once

#include "model/AppLanguage.h"

#include <QGroupBox>

class QVBoxLayout;

namespace vormel {

class AppSettings;

/// A group of the settings page: a heading, and under it a card with one row below the other, hairlines between those
/// that are shown. Its texts follow the language. The settings must outlive it.
class SettingsSection : public QGroupBox
{
    Q_OBJECT

public:
    /// What rows leave free at their end, where switches have the room for the ring of the focus.
    static constexpr int endOfRow = 3;

    SettingsSection(AppSettings& settings, const QString& name, QWidget* parent);

protected:
    void addRow(QWidget* row);
    void setHeading(const QString& heading);
    [[nodiscard]] AppLanguage language() const;
    [[nodiscard]] AppSettings& settings() const { return m_settings; }

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void makeRoomForHeading();
    [[nodiscard]] QFont headingFont() const;
    [[nodiscard]] QRect card() const;

    AppSettings& m_settings;
    QVBoxLayout* m_rows;
};

} // namespace vormel

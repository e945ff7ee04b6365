#pragma once

#include <QWidget>

namespace vormel {

class AppSettings;
class Notices;
struct Notice;

/// One notice: a glyph, its text, its actions, and a cross where it may be put away.
class NoticeLine final : public QWidget
{
    Q_OBJECT

public:
    /// The notice must be one of these, which outlive it as the settings do.
    NoticeLine(const Notice& notice, Notices& notices, const AppSettings& settings, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vormel

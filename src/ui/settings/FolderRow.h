#pragma once

#include "model/AppSettings.h"
#include "ui/ViewPorts.h"

#include <QWidget>

class QPushButton;
class QToolButton;

namespace vormel {

class PathLabel;
class StyledLabel;

/// A row that shows the folder of one setting and lets it be chosen, reset to the user's Downloads folder, and opened.
/// Follows the setting and the language. The ports outlive it.
class FolderRow final : public QWidget
{
    Q_OBJECT

public:
    FolderRow(const ViewPorts& ports, Setting<QString> AppSettings::*setting, const QString& name,
              const TextPair& label, QWidget* parent);

private:
    [[nodiscard]] AppSettings& settings() const;
    [[nodiscard]] Setting<QString>& setting() const { return settings().*m_setting; }
    void layOut();
    void connectParts();
    void choose();
    void showFolder();
    void showTexts();

    ViewPorts m_ports;
    Setting<QString> AppSettings::*m_setting;
    TextPair m_label;
    StyledLabel* m_text;
    PathLabel* m_path;
    QToolButton* m_open;
    QPushButton* m_choose;
    QPushButton* m_reset;
};

} // namespace vormel

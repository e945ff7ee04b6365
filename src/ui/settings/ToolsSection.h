#pragma once

#include "ui/settings/SettingsSection.h"

namespace vormel {

class ToolRow;
class ToolWatch;

/// The table of the programs that open archives. The tools must outlive it.
class ToolsSection final : public SettingsSection
{
    Q_OBJECT

public:
    ToolsSection(AppSettings& settings, const ToolWatch& tools, QWidget* parent);

private:
    void showTools();
    void retranslate();

    const ToolWatch& m_tools;
    ToolRow* m_unzip;
    ToolRow* m_unrar;
    ToolRow* m_rar;
    ToolRow* m_sevenZip;
};

} // namespace vormel

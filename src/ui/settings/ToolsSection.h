#pragma once

#include "kit/Card.h"

namespace vormel {

class ToolRow;
class ToolWatch;

/// The table of the programs that open archives. The tools must outlive it.
class ToolsSection final : public Card
{
    Q_OBJECT

public:
    ToolsSection(AppSettings& settings, const ToolWatch& tools, QWidget* parent);

private:
    void showTools();

    const ToolWatch& m_tools;
    ToolRow* m_unzip;
    ToolRow* m_unrar;
    ToolRow* m_rar;
    ToolRow* m_sevenZip;
};

} // namespace vormel

#pragma once

#include "ui/ViewPorts.h"
#include "ui/settings/SettingsSection.h"

namespace vormel {

class FolderRow;
class ToggleRow;

/// What becomes of archives when they are complete. What depends on a setting that is off is hidden and keeps its
/// value. What the ports name must outlive it.
class ExtractionSection final : public SettingsSection
{
    Q_OBJECT

public:
    ExtractionSection(const ViewPorts& ports, QWidget* parent);

private:
    void addDisposal();
    void addFolder(const ViewPorts& ports);
    void addNames();
    void showRows();

    ToggleRow* m_trashArchive = nullptr;
    ToggleRow* m_trashFolder = nullptr;
    ToggleRow* m_removeGroup = nullptr;
    FolderRow* m_folder = nullptr;
    ToggleRow* m_dotsToSpaces = nullptr;
};

} // namespace vormel

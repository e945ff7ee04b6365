#pragma once

#include "kit/Card.h"
#include "ui/ViewPorts.h"

namespace vormel {

class FolderRow;
class ToggleRow;

/// What becomes of archives when they are complete. What depends on a setting that is off is hidden and keeps its
/// value. The ports outlive it.
class ExtractionSection final : public Card
{
    Q_OBJECT

public:
    ExtractionSection(const ViewPorts& ports, QWidget* parent);

private:
    void addDisposal();
    void addFolder(const ViewPorts& ports);
    void addNames();
    void showRows();

    AppSettings& m_settings;
    ToggleRow* m_trashArchive = nullptr;
    ToggleRow* m_trashFolder = nullptr;
    ToggleRow* m_removeGroup = nullptr;
    FolderRow* m_folder = nullptr;
    ToggleRow* m_dotsToSpaces = nullptr;
};

} // namespace vormel

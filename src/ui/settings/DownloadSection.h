#pragma once

#include "ui/ViewPorts.h"
#include "ui/settings/SettingsSection.h"

namespace vormel {

/// How many files are downloaded at once, which, and where to. What the ports name must outlive it.
class DownloadSection final : public SettingsSection
{
    Q_OBJECT

public:
    DownloadSection(const ViewPorts& ports, QWidget* parent);

private:
    void addToggles();
};

} // namespace vormel

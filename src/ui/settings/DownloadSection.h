#pragma once

#include "kit/Card.h"
#include "ui/ViewPorts.h"

namespace vormel {

/// How many files are downloaded at once, which, and where to. The ports outlive it.
class DownloadSection final : public Card
{
    Q_OBJECT

public:
    DownloadSection(const ViewPorts& ports, QWidget* parent);

private:
    void addToggles(AppSettings& settings);
};

} // namespace vormel

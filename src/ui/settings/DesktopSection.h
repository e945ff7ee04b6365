#pragma once

#include "kit/Card.h"

namespace vormel {

/// What the program does beside its window. The settings must outlive it.
class DesktopSection final : public Card
{
    Q_OBJECT

public:
    DesktopSection(AppSettings& settings, QWidget* parent);
};

} // namespace vormel

#pragma once

#include "ui/FakeDesktop.h"
#include "ui/sheets/signin/TerabytezLoginSheetView.h"

namespace vormel::fixtures {

/// What a sheet for signing in works with, over the pages that the test acts for.
[[nodiscard]] inline TerabytezLoginSheetView::Ports signInPorts(FakeDesktop& desktop)
{
    return {pagePorts(desktop.ports()), {QStringLiteral("terabytez.example")}};
}

} // namespace vormel::fixtures

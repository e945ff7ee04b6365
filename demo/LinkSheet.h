#pragma once

class QString;

namespace vormel {

class MainWindow;

} // namespace vormel

namespace vormel::demo {

/// Opens the sheet for links, which takes what is on the clipboard: this link from now on.
void openLinkSheet(MainWindow& window, const QString& link);

} // namespace vormel::demo

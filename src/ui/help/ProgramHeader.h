#pragma once

class QLabel;
class QLayout;
class QWidget;

namespace vormel {

struct ProgramLabels
{
    QLabel* name;
    QLabel* version;
    QLabel* kind;
};

/// Which program this is: its icon, beside it name and version, which are filled in, and below them its kind. The
/// labels must be there as long as the layout, which goes to the caller; the icon belongs to the parent.
[[nodiscard]] QLayout* programHeader(const ProgramLabels& labels, QWidget* parent);

} // namespace vormel

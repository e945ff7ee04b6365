#pragma once

#include <QDialog>

namespace vormel {

/// A sheet with a page of the browser in it: as large as such a page wants to be where the window and the screen let
/// it, and never larger. Return belongs to the page and its fields, and presses no button that has not the focus.
class PageSheet : public QDialog
{
    Q_OBJECT

public:
    explicit PageSheet(QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace vormel

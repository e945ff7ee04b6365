#pragma once

#include "ui/shell/Page.h"

#include <QListWidget>

namespace vormel {

class AppSettings;

/// The list of the pages. The settings must outlive it.
class Sidebar final : public QListWidget
{
    Q_OBJECT

public:
    static constexpr int minWidth = 150;
    static constexpr int idealWidth = 180;

    explicit Sidebar(const AppSettings& settings, QWidget* parent = nullptr);

    [[nodiscard]] Page page() const;
    void setPage(Page page) { setCurrentRow(static_cast<int>(page)); }
    [[nodiscard]] QSize sizeHint() const override { return {idealWidth, QListWidget::sizeHint().height()}; }

Q_SIGNALS:
    void pageChosen(vormel::Page page);

protected:
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                                       const QEvent* event) const override;
};

} // namespace vormel

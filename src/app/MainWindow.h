#pragma once

#include "ui/ViewPorts.h"
#include "ui/shell/Page.h"

#include <QMainWindow>

#include <array>

class QAction;
class QMenu;
class QStackedWidget;

namespace vormel {

class AppSettings;
class Sidebar;

/// The window: sidebar, pages and menu bar. A page is built when it is first shown, so that the window comes up fast.
/// What the ports name must outlive it.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const ViewPorts& ports);

    [[nodiscard]] Page page() const;
    void showPage(Page page);

private:
    void buildMenu();
    void layOut();
    void openPage(Page page);
    [[nodiscard]] QWidget* makePage(Page page);
    void retranslate();

    [[nodiscard]] AppSettings& settings() const;

    ViewPorts m_ports;
    Sidebar* m_sidebar;
    QStackedWidget* m_pages;
    std::array<QWidget*, allPages.size()> m_built{}; ///< null until first shown; owned by the stack
    QMenu* m_menu = nullptr;
    QAction* m_quit = nullptr;
};

} // namespace vormel

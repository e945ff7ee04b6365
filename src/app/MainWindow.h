#pragma once

#include "model/ItemId.h"
#include "text/Link.h"
#include "ui/ViewPorts.h"
#include "ui/shell/Page.h"

#include <QMainWindow>
#include <QPointer>

#include <array>

class QSplitter;
class QStackedWidget;

namespace vormel {

class AppSettings;
class DownloadQueueView;
class HelpWindowController;
class Sidebar;
class Updater;

/// The window: sidebar, pages and menu bar. A page is built when it is first shown, so that the window comes up fast.
/// Closing it ends the program. The updater and what the ports name must outlive it.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(const ViewPorts& ports, Updater& updater);

    [[nodiscard]] Page page() const;
    void showPage(Page page);
    /// Goes to its row on the page of the queue, unless a sheet is open.
    void showItem(const ItemId& id);
    /// Shows the links in the sheet for adding, at once or when whatever else is open has gone. Adds nothing.
    void offerLinks(const std::vector<Link>& links);
    /// Between sidebar and pages.
    [[nodiscard]] QSplitter& splitter() const { return *m_splitter; }

private:
    void buildMenu(Updater& updater);
    void showAbout();
    void layOut();
    void openPage(Page page);
    [[nodiscard]] QWidget* makePage(Page page);
    void showTitle();

    [[nodiscard]] AppSettings& settings() const;

    ViewPorts m_ports;
    QSplitter* m_splitter;
    Sidebar* m_sidebar;
    QStackedWidget* m_pages;
    DownloadQueueView* m_queue;
    std::array<QWidget*, allPages.size()> m_built{}; ///< null until first shown; owned by the stack
    HelpWindowController* m_help;
    QPointer<QWidget> m_about; ///< null while closed
};

} // namespace vormel

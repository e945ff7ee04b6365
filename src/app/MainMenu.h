#pragma once

#include "ui/shell/Page.h"

#include <QObject>

#include <array>

class QAction;
class QMenu;
class QMenuBar;

namespace vormel {

class AppSettings;
class CheckForUpdatesViewModel;
class DownloadQueueView;

/// The menu bar: what concerns the program, the queue, the selected row, the pages, and help. Everything in it works
/// whichever page is showing.
class MainMenu final : public QObject
{
    Q_OBJECT

public:
    /// All outlive it.
    struct Ports
    {
        QMenuBar& bar;
        DownloadQueueView& queue;
        const CheckForUpdatesViewModel& updates;
        const AppSettings& settings;
    };
    MainMenu(const Ports& ports, QObject* parent);

Q_SIGNALS:
    void pageRequested(vormel::Page page);
    void addRequested();
    void helpRequested();
    void aboutRequested();

private:
    [[nodiscard]] QMenu* addMenu(const QString& name);
    void fillProgramMenu();
    void fillQueueMenu();
    void fillSelectionMenu();
    void fillPagesMenu();
    void fillHelpMenu();
    void bindTexts();

    Ports m_ports;
    QMenu* m_program;
    QMenu* m_queue;
    QMenu* m_selection; ///< made anew each time it is opened
    QMenu* m_pages;
    QMenu* m_help;
    QAction* m_quit = nullptr;
    QAction* m_about = nullptr;
    std::array<QAction*, allPages.size()> m_pageActions{};
};

} // namespace vormel

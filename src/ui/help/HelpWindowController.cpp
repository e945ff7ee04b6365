#include "ui/help/HelpWindowController.h"

#include "kit/GlyphIcon.h"
#include "ui/help/HelpView.h"

#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr QSize firstSize(500, 640);
constexpr QSize minSize(420, 400);

} // namespace

HelpWindowController::HelpWindowController(const AppSettings& settings, QString filestore, QWidget& owner)
    : QObject(&owner)
    , m_settings(settings)
    , m_filestore(std::move(filestore))
    , m_owner(owner)
{}

HelpWindowController::~HelpWindowController()
{
    delete m_window;
}

void HelpWindowController::showWindow()
{
    QWidget* window = m_window;
    if (!window || !window->isVisible()) { // a closed one is deleted only after this turn of the event loop
        window = makeWindow();
        m_window = window;
    }
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

QWidget* HelpWindowController::makeWindow() const
{
    auto* window = new QWidget; // deletes itself when it is closed, or goes with this
    window->setObjectName(u"helpWindow"_s);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setAttribute(Qt::WA_QuitOnClose, false); // the main window decides that
    window->setWindowTitle(u"Vormel"_s);
    window->setWindowIcon(programIcon());
    window->setMinimumSize(minSize);
    auto* column = new QVBoxLayout(window);
    column->setContentsMargins(0, 0, 0, 0);
    auto* view = new HelpView(m_settings, m_filestore, window);
    column->addWidget(view);
    view->setFocus();
    const QList<QKeySequence> closing{QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)};
    for (const QKeySequence& keys : closing)
        connect(new QShortcut(keys, window), &QShortcut::activated, window, &QWidget::close);
    const QRect screen = m_owner.screen()->availableGeometry();
    window->setGeometry(QStyle::alignedRect(Qt::LayoutDirectionAuto, Qt::AlignCenter, firstSize, screen));
    return window;
}

} // namespace vormel

#include "ui/queue/QueueSheets.h"

#include "engine/DownloadManager.h"
#include "platform/async/Spawn.h"
#include "resolvers/ResolverTables.h"
#include "ui/sheets/AddURLView.h"
#include "ui/sheets/ArchivePasswordSheetView.h"
#include "ui/sheets/HostSelectionSheetView.h"
#include "ui/sheets/captcha/CaptchaSheetView.h"
#include "ui/sheets/signin/TerabytezLoginSheetView.h"

#include <QApplication>
#include <QEvent>

#include <utility>

namespace vormel {

namespace {

/// Nothing is filled in where the host has no account that is used.
QCoro::Task<> fillIn(QPointer<TerabytezLoginSheetView> sheet, QPointer<Accounts> accounts, SupportedHost host)
{
    const HostAccount* const found = accounts->firstEnabled(host);
    if (!found)
        co_return;
    const HostAccount account = *found;
    const QString password = co_await accounts->loadPassword(account);
    if (sheet)
        sheet->setCredentials({account.username, password});
}

std::vector<SupportedHost> hostsWithAccount(const Accounts& accounts)
{
    std::vector<SupportedHost> hosts;
    for (const HostAccount& account : accounts.list()) {
        if (account.isEnabled)
            hosts.push_back(account.host);
    }
    return hosts;
}

} // namespace

QueueSheets::QueueSheets(const ViewPorts& ports, QWidget& page)
    : QObject(&page)
    , m_ports(ports)
    , m_manager(ports.manager)
    , m_page(page)
{
    page.installEventFilter(this);
    connect(&m_manager, &DownloadManager::changed, this, &QueueSheets::follow);
}

bool QueueSheets::eventFilter(QObject* watched, QEvent* event)
{
    const bool isWaitedFor =
        event->type() == QEvent::Show ? watched == &m_page : event->type() == QEvent::Hide && watched == m_cover;
    if (isWaitedFor)
        QMetaObject::invokeMethod(this, &QueueSheets::follow, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

bool QueueSheets::isStillAsked(const Question& question) const
{
    if (const auto* const captcha = std::get_if<PendingCaptcha>(&question))
        return m_manager.questions().pendingCaptcha() == *captcha;
    if (const auto* const hosts = std::get_if<PendingHostSelection>(&question))
        return m_manager.questions().pendingHostSelection() == *hosts;
    if (const auto* const password = std::get_if<PendingExtractionPassword>(&question))
        return m_manager.questions().pendingExtractionPassword() == *password;
    if (const auto* const host = std::get_if<SupportedHost>(&question))
        return m_manager.questions().pendingLogin() == *host;
    return false;
}

QueueSheets::Question QueueSheets::pending() const
{
    if (const std::optional<PendingCaptcha> question = m_manager.questions().pendingCaptcha())
        return *question;
    if (m_manager.questions().pendingLogin())
        return *m_manager.questions().pendingLogin();
    if (m_manager.questions().pendingHostSelection())
        return *m_manager.questions().pendingHostSelection();
    if (const std::optional<PendingExtractionPassword> question = m_manager.questions().pendingExtractionPassword())
        return *question;
    return {};
}

void QueueSheets::follow()
{
    const bool isAsking = m_sheet && m_asked.index() != 0;
    if (isAsking && !isStillAsked(m_asked))
        dismiss();
    if (placeOffered() || m_sheet || !m_page.isVisible())
        return;
    m_asked = pending();
    std::visit([this](const auto& question) { ask(question); }, Question(m_asked));
}

bool QueueSheets::placeOffered()
{
    if (m_offered.empty())
        return false;
    auto* const adding = qobject_cast<AddURLView*>(m_sheet);
    if (adding && adding->takesLinks()) {
        adding->append(std::exchange(m_offered, {}));
        return true;
    }
    if (m_sheet || isCovered())
        return false;
    if (!m_page.isVisible())
        Q_EMIT pageWanted();
    if (!m_page.isVisible()) // nobody shows it now; it tells when it is there
        return false;
    openAddURLs();
    return true;
}

/// A dialog of another page, or a message, is open above the window.
bool QueueSheets::isCovered()
{
    QWidget* const modal = QApplication::activeModalWidget();
    if (m_cover && m_cover != modal)
        m_cover->removeEventFilter(this);
    m_cover = modal;
    if (modal)
        modal->installEventFilter(this);
    return modal;
}

void QueueSheets::open(QDialog* sheet)
{
    m_sheet = sheet;
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(sheet, &QDialog::finished, this, [this, sheet] {
        if (m_sheet == sheet)
            release();
        // Behind the answer, which is given after the sheet was closed.
        QMetaObject::invokeMethod(this, &QueueSheets::follow, Qt::QueuedConnection);
    });
    sheet->open();
}

/// From here on the next question may be asked, be it the same again.
void QueueSheets::release()
{
    m_sheet = nullptr;
    m_asked = {};
}

void QueueSheets::dismiss()
{
    QDialog* const sheet = m_sheet;
    release();
    sheet->disconnect(this); // the question went by itself, and closing is no answer
    sheet->close();
}

void QueueSheets::showAddURLs()
{
    if (!m_sheet)
        openAddURLs();
}

void QueueSheets::offerLinks(const std::vector<Link>& links)
{
    m_offered.insert(m_offered.end(), links.begin(), links.end());
    follow();
}

void QueueSheets::openAddURLs()
{
    auto* sheet = new AddURLView(m_manager.settings(), m_manager.resolvers(), &m_page);
    connect(sheet, &AddURLView::added, &m_manager, &DownloadManager::addURLs);
    connect(sheet, &AddURLView::formShown, this, &QueueSheets::follow);
    if (!m_offered.empty())
        sheet->append(std::exchange(m_offered, {}));
    open(sheet);
}

void QueueSheets::show(QDialog* sheet)
{
    if (m_sheet)
        delete sheet;
    else
        open(sheet);
}

/// Whatever closes it other than its answer cancels the question.
void QueueSheets::openQuestion(QDialog* sheet, const std::function<void()>& cancel)
{
    connect(sheet, &QDialog::rejected, this, [this, cancel] {
        release();
        cancel();
    });
    open(sheet);
}

void QueueSheets::ask(const PendingCaptcha& question)
{
    auto* sheet = new CaptchaSheetView({pagePorts(m_ports), m_ports.captcha}, question.containerURL,
                                       hostsWithAccount(m_manager.accounts()), &m_page);
    connect(sheet, &CaptchaSheetView::linksExtracted, &m_manager.questions(), &Questions::addCaptchaLinks);
    openQuestion(sheet, [this] { m_manager.questions().cancelCaptcha(); });
}

void QueueSheets::ask(const PendingHostSelection& question)
{
    auto* sheet = new HostSelectionSheetView(question, m_manager.settings(), &m_page);
    connect(sheet, &HostSelectionSheetView::confirmed, &m_manager.questions(), &Questions::confirmHostSelection);
    openQuestion(sheet, [this] { m_manager.questions().cancelHostSelection(); });
}

void QueueSheets::ask(const PendingExtractionPassword& question)
{
    auto* sheet = new ArchivePasswordSheetView(question, m_manager.settings(), &m_page);
    connect(sheet, &ArchivePasswordSheetView::confirmed, &m_manager.questions(), &Questions::submitExtractionPassword);
    openQuestion(sheet, [this] { m_manager.questions().cancelExtractionPassword(); });
}

/// Whether the account could be read is of no matter to the items that wait.
void QueueSheets::ask(SupportedHost host)
{
    const TerabytezSite site{m_manager.resolvers().profiles().of(host).domain};
    auto* sheet = new TerabytezLoginSheetView({pagePorts(m_ports), site}, &m_page);
    connect(sheet, &TerabytezLoginSheetView::loggedIn, &m_manager.questions(), &Questions::loginSucceeded);
    openQuestion(sheet, [this] { m_manager.questions().cancelLogin(); });
    spawn(fillIn(sheet, &m_manager.accounts(), host));
}

} // namespace vormel

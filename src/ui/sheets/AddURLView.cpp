#include "ui/sheets/AddURLView.h"

#include "kit/BoundText.h"
#include "resolvers/ResolverTables.h"
#include "ui/sheets/HostChooser.h"
#include "ui/sheets/LinkForm.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QShortcut>
#include <QStackedLayout>

using namespace Qt::StringLiterals;

namespace vormel {

AddURLView::AddURLView(AppSettings& settings, const ResolverTables& resolvers, QWidget* parent)
    : QDialog(parent)
    , m_settings(settings)
    , m_profiles(resolvers.profiles())
    , m_form(new LinkForm(settings, resolvers, this))
    , m_chooser(new HostChooser(settings, {}, this))
    , m_pages(new QStackedLayout(this))
{
    constexpr QSize minSize(420, 300);
    constexpr QSize usual(520, 360);
    setObjectName(u"addURLView"_s);
    setWindowModality(Qt::WindowModal);
    m_pages->addWidget(m_form);
    m_pages->addWidget(m_chooser);
    setMinimumSize(minSize);
    resize(usual);
    const auto* escape = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &AddURLView::reject);
    connect(m_form, &LinkForm::accepted, this, &AddURLView::addOrAsk);
    connect(m_form, &LinkForm::cancelled, this, &AddURLView::reject);
    connect(m_chooser, &HostChooser::chosen, this, &AddURLView::addGroup);
    connect(m_chooser, &HostChooser::allChosen, this, &AddURLView::addAll);
    connect(m_chooser, &HostChooser::cancelled, this, &AddURLView::showForm);
    followLanguage(this, settings, [this] { showTitle(); });
}

void AddURLView::showTitle()
{
    const AppLanguage language = m_settings.language.value();
    setWindowTitle(m_pages->currentWidget() == m_chooser
                       ? pair(language, u"Choose Download Server", u"Scegli il server di download")
                       : pair(language, u"Add URLs", u"Aggiungi URL"));
}

bool AddURLView::takesLinks() const
{
    return m_pages->currentWidget() == m_form;
}

void AddURLView::append(const std::vector<Link>& links)
{
    m_form->append(links);
}

void AddURLView::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        m_form->prefill();
}

void AddURLView::reject()
{
    if (m_pages->currentWidget() == m_chooser)
        showForm();
    else
        QDialog::reject();
}

void AddURLView::closeEvent(QCloseEvent* event)
{
    // Closing the window means closing it, also from within the choice.
    QDialog::reject();
    event->accept();
}

void AddURLView::showForm()
{
    m_pages->setCurrentWidget(m_form);
    m_form->addButton()->setDefault(true);
    m_form->prefill();
    showTitle();
    Q_EMIT formShown();
}

void AddURLView::showChooser()
{
    m_pages->setCurrentWidget(m_chooser);
    m_chooser->offer(m_groups);
    showTitle();
}

void AddURLView::addOrAsk()
{
    m_groups = m_form->links().hostGroups(m_profiles);
    if (m_groups.size() < 2)
        addAll();
    else
        showChooser();
}

void AddURLView::addGroup(int group)
{
    std::vector<Link> urls = m_form->links().containerURLs();
    const std::vector<Link>& chosen = m_groups[static_cast<std::size_t>(group)].urls;
    urls.insert(urls.end(), chosen.begin(), chosen.end());
    finish(urls);
}

void AddURLView::addAll()
{
    finish(m_form->links().validURLs());
}

void AddURLView::finish(const std::vector<Link>& urls)
{
    Q_EMIT added(urls, m_form->password());
    accept();
}

} // namespace vormel

#include "ui/queue/QueueToolBar.h"

#include "config/Services.h"
#include "engine/DownloadManager.h"
#include "kit/BoundText.h"
#include "kit/GlyphIcon.h"
#include "platform/desktop/UrlOpener.h"
#include "ui/ViewPorts.h"
#include "ui/queue/SpeedControl.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QStyleOptionToolButton>
#include <QToolButton>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

void setTexts(QAction& action, const QString& text, const QString& tip)
{
    action.setText(text);
    action.setToolTip(tip);
}

} // namespace

QueueToolBar::QueueToolBar(const ViewPorts& ports, QWidget* parent)
    : QWidget(parent)
    , m_manager(ports.manager)
    , m_add(new QAction(glyphIcon(Glyph::plus), {}, this))
    , m_startAll(new QAction(glyphIcon(Glyph::play), {}, this))
    , m_pauseAll(new QAction(glyphIcon(Glyph::pause), {}, this))
    , m_clearCompleted(new QAction(glyphIcon(Glyph::checkmarkCircle), {}, this))
    , m_clearExtracted(new QAction(glyphIcon(Glyph::archivebox), {}, this))
    , m_donate(new QAction(glyphIcon(Glyph::mugFill, Tint::beer), {}, this))
{
    setObjectName(u"queueToolBar"_s);
    m_add->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    layOut();
    connect(m_add, &QAction::triggered, this, &QueueToolBar::addRequested);
    connect(m_startAll, &QAction::triggered, this, [this] { m_manager.commands().startAll(); });
    connect(m_pauseAll, &QAction::triggered, this, [this] { m_manager.commands().pauseAll(); });
    connect(m_clearCompleted, &QAction::triggered, this, [this] { m_manager.removed().clearCompleted(); });
    connect(m_clearExtracted, &QAction::triggered, this, [this] { m_manager.removed().clearExtracted(); });
    connect(m_donate, &QAction::triggered, this,
            [&opener = ports.urlOpener] { opener.open(QUrl(QString(donationUrl))); });
    followLanguage(this, m_manager.settings(), [this] { showTexts(); });
}

QList<QAction*> QueueToolBar::commands() const
{
    return {m_add, m_startAll, m_pauseAll, m_clearCompleted, m_clearExtracted};
}

QToolButton* QueueToolBar::makeButton(QAction* action, const QString& name)
{
    auto* button = new QToolButton(this);
    button->setObjectName(name);
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

/// Makes the controls in the order in which Tab goes through them.
void QueueToolBar::layOut()
{
    const QStringList names{u"addURLs"_s, u"startAll"_s, u"pauseAll"_s, u"clearCompleted"_s, u"clearExtracted"_s};
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 8, 10, 8);
    row->setSpacing(4);
    for (QAction* command : commands()) {
        m_buttons << makeButton(command, names.at(m_buttons.size()));
        row->addWidget(m_buttons.back());
    }
    row->addStretch();
    row->addWidget(new SpeedControl(m_manager, this));
    m_donation = makeButton(m_donate, u"donate"_s);
    row->addWidget(m_donation);
}

void QueueToolBar::showTexts()
{
    const AppLanguage language = m_manager.settings().language.value();
    const QString add = pair(language, u"Add URLs", u"Aggiungi URL");
    setTexts(*m_add, add, add + u" (%1)"_s.arg(m_add->shortcut().toString(QKeySequence::NativeText)));
    setTexts(*m_startAll, pair(language, u"Start All", u"Avvia tutti"),
             pair(language, u"Resume all paused downloads (stopped ones stay out)",
                  u"Riprendi tutti i download in pausa (i fermati restano fuori)"));
    setTexts(*m_pauseAll, pair(language, u"Pause All", u"Metti in pausa"),
             pair(language, u"Pause all active downloads", u"Metti in pausa tutti i download attivi"));
    setTexts(*m_clearCompleted, pair(language, u"Clear Completed", u"Rimuovi completati"),
             pair(language, u"Remove completed downloads from the list", u"Rimuovi i download completati dalla lista"));
    setTexts(*m_clearExtracted, pair(language, u"Clear Extracted", u"Rimuovi estratti"),
             pair(language, u"Remove fully extracted groups from the list", u"Rimuovi i gruppi estratti dalla lista"));
    setTexts(*m_donate, pair(language, u"Buy me a beer", u"Offrimi una birra"),
             pair(language, u"Support Vormel — buy me a beer 🍺", u"Supporta Vormel — offrimi una birra 🍺"));
    for (QToolButton* button : m_buttons + QList{m_donation})
        button->setAccessibleName(button->defaultAction()->text());
    fitTexts();
}

/// The commands lose their texts from the last to the first, which is needed most.
void QueueToolBar::fitTexts()
{
    for (QToolButton* button : std::as_const(m_buttons))
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (qsizetype shown = m_buttons.size(); shown > 0; --shown) {
        layout()->invalidate();
        if (layout()->minimumSize().width() <= width())
            return;
        m_buttons.at(shown - 1)->setToolButtonStyle(Qt::ToolButtonIconOnly);
    }
}

QSize QueueToolBar::minimumSizeHint() const
{
    int width = layout()->minimumSize().width();
    for (const QToolButton* button : m_buttons) {
        QStyleOptionToolButton bare;
        bare.initFrom(button);
        bare.iconSize = button->iconSize();
        const QSize icon = button->style()->sizeFromContents(QStyle::CT_ToolButton, &bare, bare.iconSize, button);
        width += icon.width() - button->sizeHint().width();
    }
    return {width, layout()->minimumSize().height()};
}

void QueueToolBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fitTexts();
}

void QueueToolBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        fitTexts();
}

} // namespace vormel

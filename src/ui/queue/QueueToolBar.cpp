#include "ui/queue/QueueToolBar.h"

#include "engine/DownloadManager.h"
#include "ui/kit/GlyphIcon.h"
#include "ui/queue/SpeedControl.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QStyleOptionToolButton>
#include <QToolButton>

namespace vormel {

namespace {

void setTexts(QAction& action, const QString& text, const QString& tip)
{
    action.setText(text);
    action.setToolTip(tip);
}

} // namespace

QueueToolBar::QueueToolBar(DownloadManager& manager, QWidget* parent)
    : QWidget(parent)
    , m_manager(manager)
    , m_add(new QAction(glyphIcon(Glyph::plus), {}, this))
    , m_startAll(new QAction(glyphIcon(Glyph::play), {}, this))
    , m_pauseAll(new QAction(glyphIcon(Glyph::pause), {}, this))
    , m_clearCompleted(new QAction(glyphIcon(Glyph::checkmarkCircle), {}, this))
    , m_clearExtracted(new QAction(glyphIcon(Glyph::archivebox), {}, this))
{
    setObjectName(QStringLiteral("queueToolBar"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 8, 10, 8);
    row->setSpacing(4);
    addCommand(*row, m_add, QStringLiteral("addURLs"));
    addCommand(*row, m_startAll, QStringLiteral("startAll"));
    addCommand(*row, m_pauseAll, QStringLiteral("pauseAll"));
    addCommand(*row, m_clearCompleted, QStringLiteral("clearCompleted"));
    addCommand(*row, m_clearExtracted, QStringLiteral("clearExtracted"));
    row->addStretch();
    row->addWidget(new SpeedControl(manager, this));
    m_add->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    connect(m_add, &QAction::triggered, this, &QueueToolBar::addRequested);
    connect(m_startAll, &QAction::triggered, &manager, &DownloadManager::startAll);
    connect(m_pauseAll, &QAction::triggered, &manager, &DownloadManager::pauseAll);
    connect(m_clearCompleted, &QAction::triggered, &manager, &DownloadManager::clearCompleted);
    connect(m_clearExtracted, &QAction::triggered, &manager, &DownloadManager::clearExtracted);
    connect(&manager.settings(), &AppSettings::languageSet, this, &QueueToolBar::retranslate);
    retranslate();
}

QToolButton* QueueToolBar::addCommand(QHBoxLayout& row, QAction* action, const QString& name)
{
    auto* button = new QToolButton(this);
    button->setObjectName(name);
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    row.addWidget(button);
    m_buttons << button;
    return button;
}

void QueueToolBar::retranslate()
{
    const AppLanguage language = m_manager.settings().language.value();
    const QString add = pair(language, u"Add URLs", u"Aggiungi URL");
    setTexts(*m_add, add, add + QStringLiteral(" (%1)").arg(m_add->shortcut().toString(QKeySequence::NativeText)));
    setTexts(*m_startAll, pair(language, u"Start All", u"Avvia tutti"),
             pair(language, u"Resume all paused downloads (stopped ones stay out)",
                  u"Riprendi tutti i download in pausa (i fermati restano fuori)"));
    setTexts(*m_pauseAll, pair(language, u"Pause All", u"Metti in pausa"),
             pair(language, u"Pause all active downloads", u"Metti in pausa tutti i download attivi"));
    setTexts(*m_clearCompleted, pair(language, u"Clear Completed", u"Rimuovi completati"),
             pair(language, u"Remove completed downloads from the list", u"Rimuovi i download completati dalla lista"));
    setTexts(*m_clearExtracted, pair(language, u"Clear Extracted", u"Rimuovi estratti"),
             pair(language, u"Remove fully extracted groups from the list", u"Rimuovi i gruppi estratti dalla lista"));
    for (QToolButton* button : std::as_const(m_buttons))
        button->setAccessibleName(button->defaultAction()->text());
    fitTexts();
}

void QueueToolBar::setTextsShown(bool isShown)
{
    for (QToolButton* button : std::as_const(m_buttons))
        button->setToolButtonStyle(isShown ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
}

void QueueToolBar::fitTexts()
{
    setTextsShown(true);
    layout()->invalidate();
    if (layout()->minimumSize().width() > width())
        setTextsShown(false);
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

#include "ui/sheets/HostChooser.h"

#include "kit/BoundText.h"
#include "kit/FocusInSight.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "ui/sheets/HostButton.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace vormel {

HostChooser::HostChooser(const AppSettings& settings, const Look& look, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_title(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_hosts(new QWidget)
    , m_hostColumn(new QVBoxLayout(m_hosts))
    , m_all(new SheetButton(this))
    , m_cancel(new SheetButton(this))
{
    m_title->setObjectName(u"chooserTitle"_s);
    m_text->setObjectName(u"chooserText"_s);
    m_text->setWordWrap(true);
    m_all->setObjectName(u"addAllHosts"_s);
    m_cancel->setObjectName(u"cancelChoice"_s);
    for (QPushButton* button : {m_all, m_cancel})
        button->setAutoDefault(false);
    layOut(look);
    connect(m_all, &QPushButton::clicked, this, &HostChooser::allChosen);
    connect(m_cancel, &QPushButton::clicked, this, &HostChooser::cancelled);
    bindTexts();
}

QWidget* HostChooser::makeHostList()
{
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(u"hostScroll"_s);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(m_hosts); // takes ownership
    keepFocusInSight(*scroll);
    scroll->viewport()->setAutoFillBackground(false);
    m_hosts->setAutoFillBackground(false);
    m_hostColumn->setContentsMargins(0, 0, 0, 0);
    m_hostColumn->setSpacing(8);
    return scroll;
}

void HostChooser::layOut(const Look& look)
{
    for (StyledLabel* label : {m_title, m_text})
        label->setAlignment(look.texts);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_all);
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(look.padding, look.padding, look.padding, look.padding);
    column->setSpacing(look.spacing);
    column->addWidget(m_title);
    column->addWidget(m_text);
    column->addWidget(makeHostList(), 1);
    column->addLayout(buttons);
}

void HostChooser::bindTexts()
{
    bindText(m_title, &QLabel::setText, m_settings, {u"Choose Download Server", u"Scegli il server di download"});
    bindText(m_all, &QPushButton::setText, m_settings, {u"Add all hosts", u"Aggiungi tutti gli host"});
    bindText(m_cancel, &QPushButton::setText, m_settings, {u"Cancel", u"Annulla"});
    followLanguage(this, m_settings, [this] { showCount(); });
}

void HostChooser::showCount()
{
    const AppLanguage language = m_settings.language.value();
    m_text->setText(pair(language, u"These links are available on ", u"Questi link sono disponibili su ") +
                    QString::number(m_groupCount) +
                    pair(language, u" hosts. Select the one you have a premium account for.",
                         u" host. Scegli quello per cui hai un account premium."));
}

void HostChooser::offer(const std::vector<PendingHostSelection::HostGroup>& groups)
{
    qDeleteAll(m_hosts->findChildren<HostButton*>(QString(), Qt::FindDirectChildrenOnly));
    while (const auto* left = m_hostColumn->takeAt(0))
        delete left;
    m_groupCount = static_cast<int>(groups.size());
    QWidget* before = nullptr;
    for (int i = 0; i < m_groupCount; ++i) {
        auto* button = new HostButton(groups[static_cast<std::size_t>(i)], m_hosts);
        button->setObjectName(u"host%1"_s.arg(i));
        connect(button, &HostButton::clicked, this, [this, i] { Q_EMIT chosen(i); });
        m_hostColumn->addWidget(button);
        if (before)
            setTabOrder(before, button);
        before = button;
    }
    if (auto* first = m_hosts->findChild<HostButton*>(u"host0"_s)) {
        first->show(); // the layout would do so later, and what is hidden gets no focus
        first->setFocus();
    }
    m_hostColumn->addStretch();
    setTabOrder(before, m_all);
    setTabOrder(m_all, m_cancel);
    showCount();
}

} // namespace vormel

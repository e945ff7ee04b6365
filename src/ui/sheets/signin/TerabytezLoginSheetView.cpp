#include "ui/sheets/signin/TerabytezLoginSheetView.h"

#include "kit/BoundText.h"
#include "kit/GlyphLabel.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "ui/sheets/signin/SignInMark.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

TerabytezLoginSheetView::TerabytezLoginSheetView(const Ports& ports, QWidget* parent)
    : PageSheet(parent)
    , m_signIn(new TerabytezSignIn(ports.site, ports.page.clock, this))
    , m_instruction(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_mark(new SignInMark(ports.page.settings, this))
    , m_page(new PageFrame(ports.page, this))
    , m_cancel(new SheetButton(this))
    , m_done(new SheetButton(this))
{
    setObjectName(u"terabytezLoginSheet"_s);
    layOut();
    connect(m_signIn, &TerabytezSignIn::changed, this, &TerabytezLoginSheetView::showState);
    connect(m_signIn, &TerabytezSignIn::loadRequested, m_page, &PageFrame::load);
    connect(m_signIn, &TerabytezSignIn::loggedIn, this, &TerabytezLoginSheetView::finish);
    connect(m_page, &PageFrame::navigationOver, m_signIn, &TerabytezSignIn::navigationOver);
    connect(m_page, &PageFrame::pageReady, this, &TerabytezLoginSheetView::begin);
    connect(m_cancel, &QPushButton::clicked, this, &TerabytezLoginSheetView::reject);
    connect(m_done, &QPushButton::clicked, m_signIn, &TerabytezSignIn::done);
    bindTexts(ports.page.settings);
    showState();
}

void TerabytezLoginSheetView::layOut()
{
    constexpr int iconSize = 24;
    m_instruction->setObjectName(u"signInInstruction"_s);
    m_instruction->setWordWrap(true);
    m_cancel->setObjectName(u"cancelSignIn"_s);
    m_done->setObjectName(u"signInDone"_s);
    m_done->setDefault(true);
    auto* header = new QHBoxLayout;
    header->setSpacing(10);
    header->addWidget(new GlyphLabel(Glyph::personKeyFill, Tint::orange, iconSize, this));
    header->addWidget(m_instruction, 1);
    header->addWidget(m_mark);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cancel);
    buttons->addWidget(m_done);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 12, 12, 12);
    column->setSpacing(10);
    column->addLayout(header);
    column->addWidget(m_page, 1);
    column->addLayout(buttons);
}

void TerabytezLoginSheetView::bindTexts(const AppSettings& settings)
{
    bindText(this, &QWidget::setWindowTitle, settings, {u"Sign In", u"Accedi"});
    bindText(m_instruction, &QLabel::setText, settings,
             {u"Sign in, then open your Account page (menu ▸ My Account). Once it shows, press Done.",
              u"Accedi, poi apri la pagina Account (menu ▸ My Account). Quando appare, premi Fine."});
    bindText(m_cancel, &QPushButton::setText, settings, {u"Cancel", u"Annulla"});
    bindText(m_done, &QPushButton::setText, settings, {u"Done", u"Fine"});
}

void TerabytezLoginSheetView::begin()
{
    m_signIn->usePage(*m_page->page());
    m_page->setFocus();
}

void TerabytezLoginSheetView::showState()
{
    m_done->setEnabled(m_signIn->canBeDone());
    if (m_signIn->isLoading())
        m_mark->setState(SignInMark::State::loading);
    else if (m_signIn->accountHTML())
        m_mark->setState(SignInMark::State::accountFound);
    else if (m_signIn->isLoggedIn())
        m_mark->setState(SignInMark::State::signedIn);
    else
        m_mark->setState(SignInMark::State::none);
}

void TerabytezLoginSheetView::finish(const std::optional<PremiumAccountInfo>& info)
{
    accept();
    Q_EMIT loggedIn(info);
}

} // namespace vormel

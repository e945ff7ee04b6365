#include "ui/web/PageNote.h"

#include "kit/BoundText.h"
#include "kit/CodeLabel.h"
#include "kit/GlyphLabel.h"
#include "kit/PlatformTexts.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

TextPair sentence(PageNote::Reason reason)
{
    switch (reason) {
    case PageNote::Reason::notInstalled:
        return {u"This page needs the web engine, which is not installed: run the command below, and the page opens "
                u"by itself.",
                u"Questa pagina richiede il motore web, che non è installato: esegui il comando qui sotto e la pagina "
                u"si aprirà da sola."};
    case PageNote::Reason::doesNotStart:
        return {u"This page cannot be shown, because the web engine is installed but does not start.",
                u"Impossibile mostrare la pagina: il motore web è installato ma non si avvia."};
    case PageNote::Reason::failed:
        return {u"The page could not be shown.", u"Impossibile mostrare la pagina."};
    }
    Q_UNREACHABLE();
}

} // namespace

PageNote::PageNote(const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
    , m_command(new CodeLabel(this))
    , m_reload(new SheetButton(this))
{
    setObjectName(u"pageNote"_s);
    m_text->setObjectName(u"pageNoteText"_s);
    m_command->setObjectName(u"installCommand"_s);
    m_reload->setObjectName(u"reloadPage"_s);
    layOut();
    m_command->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    connect(m_reload, &QPushButton::clicked, this, &PageNote::reloadRequested);
    bindText(m_reload, &QPushButton::setText, settings, {u"Reload", u"Ricarica"});
    followLanguage(this, settings, [this] { showTexts(); });
}

void PageNote::layOut()
{
    constexpr int iconSize = 34;
    m_text->setWordWrap(true);
    m_text->setAlignment(Qt::AlignCenter);
    m_command->setWordWrap(true);
    m_command->setAlignment(Qt::AlignCenter);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 16, 24, 16);
    column->setSpacing(12);
    column->addStretch(2);
    column->addWidget(new GlyphLabel(Glyph::exclamationmarkTriangleFill, Tint::orange, iconSize, this), 0,
                      Qt::AlignHCenter);
    column->addWidget(m_text);
    column->addWidget(m_command);
    column->addWidget(m_reload, 0, Qt::AlignHCenter);
    column->addStretch(3); // a little above the middle looks centred
}

void PageNote::say(Reason reason)
{
    m_reason = reason;
    showTexts();
}

void PageNote::showTexts()
{
    const AppLanguage language = m_settings.language.value();
    m_text->setText(sentence(m_reason).in(language));
    m_command->setText(platformText(PlatformText::webEngineCommand, language));
    m_command->setAccessibleName(m_command->text());
    m_command->setVisible(m_reason == Reason::notInstalled);
    m_reload->setVisible(m_reason == Reason::failed);
    setAccessibleName(m_text->text());
}

} // namespace vormel

#include "ui/sheets/signin/SignInMark.h"

#include "kit/BoundText.h"
#include "kit/GlyphLabel.h"
#include "kit/Spinner.h"
#include "kit/StyledLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

constexpr int markSize = 16;

/// What assistive technology has in place of the spinner is never seen.
TextPair markWords(SignInMark::State state)
{
    switch (state) {
    case SignInMark::State::none:
        return {u"", u""};
    case SignInMark::State::signedIn:
        return {u"Signed in", u"Accesso effettuato"};
    case SignInMark::State::accountFound:
        return {u"Account found", u"Account trovato"};
    case SignInMark::State::loading:
        return {u"Checking...", u"Verifica in corso..."};
    }
    Q_UNREACHABLE();
}

} // namespace

SignInMark::SignInMark(const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_spinner(new Spinner(markSize, this))
    , m_check(new GlyphLabel(Glyph::checkmarkCircle, Tint::text, markSize, this))
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::text, this))
{
    setObjectName(u"signInMark"_s);
    m_spinner->setObjectName(u"signInSpinner"_s);
    m_check->setObjectName(u"signInCheck"_s);
    m_text->setObjectName(u"signInState"_s);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(m_spinner);
    row->addWidget(m_check);
    row->addWidget(m_text);
    followLanguage(this, settings, [this] { showTexts(); });
}

void SignInMark::setState(State state)
{
    m_state = state;
    showTexts();
}

void SignInMark::showTexts()
{
    const QString words = markWords(m_state).in(m_settings.language.value());
    const bool isChecked = m_state == State::signedIn || m_state == State::accountFound;
    const bool isFound = m_state == State::accountFound;
    m_spinner->setVisible(m_state == State::loading);
    m_check->setVisible(isChecked);
    m_check->setLook(isFound ? Glyph::checkmarkCircleFill : Glyph::checkmarkCircle, isFound ? Tint::green : Tint::text);
    m_text->setVisible(isChecked);
    m_text->setText(words);
    m_text->setTint(isFound ? Tint::green : Tint::text);
    setAccessibleName(words);
}

} // namespace vormel

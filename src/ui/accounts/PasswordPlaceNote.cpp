#include "ui/accounts/PasswordPlaceNote.h"

#include "engine/accounts/Accounts.h"
#include "kit/BoundText.h"
#include "kit/GlyphLabel.h"
#include "kit/StyledLabel.h"

#include <QHBoxLayout>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace vormel {

QString passwordPlaceText(SecretStore::Place place, AppLanguage language)
{
    switch (place) {
    case SecretStore::Place::keyring:
        return {};
    case SecretStore::Place::ownFile:
        return pair(language, u"No keyring answers, so passwords are kept in a file that only you can read.",
                    u"Nessun portachiavi risponde: le password sono in un file che solo tu puoi leggere.");
    case SecretStore::Place::nowhere:
        return pair(language, u"No keyring answers, so passwords are not kept.",
                    u"Nessun portachiavi risponde: le password non vengono conservate.");
    }
    Q_UNREACHABLE();
}

PasswordPlaceNote::PasswordPlaceNote(const Accounts& accounts, const AppSettings& settings, QWidget* parent)
    : QWidget(parent)
    , m_accounts(accounts)
    , m_settings(settings)
    , m_text(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
{
    constexpr int iconSize = 16;
    setObjectName(u"passwordPlaceNote"_s);
    m_text->setObjectName(u"passwordPlaceText"_s);
    m_text->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(14, 8, 14, 8);
    row->setSpacing(8);
    row->addWidget(new GlyphLabel(Glyph::lock, Tint::secondary, iconSize, this));
    row->addWidget(m_text, 1);
    connect(&accounts, &Accounts::passwordPlaceChanged, this, &PasswordPlaceNote::showPlace);
    followLanguage(this, settings, [this] { showPlace(); });
}

void PasswordPlaceNote::showPlace()
{
    const QString text = passwordPlaceText(m_accounts.passwordPlace(), m_settings.language.value());
    m_text->setText(text);
    setAccessibleName(text);
    setHidden(text.isEmpty());
}

void PasswordPlaceNote::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.fillRect(QRect(0, 0, width(), 1), Theme(palette()).color(Tint::track));
}

} // namespace vormel

#include "ui/settings/ManagerWarning.h"

#include "model/AppSettings.h"
#include "ui/kit/GlyphLabel.h"
#include "ui/kit/PlatformTexts.h"
#include "ui/kit/SheetButton.h"
#include "ui/kit/StyledLabel.h"
#include "ui/kit/TextColumn.h"
#include "ui/settings/SettingsSection.h"

#include <QHBoxLayout>

namespace vormel {

namespace {

QString installerCommand(const QString& url)
{
    return QStringLiteral("/bin/bash -c \"$(curl -fsSL %1)\"").arg(url);
}

} // namespace

ManagerWarning::ManagerWarning(AppSettings& settings, const QString& installerUrl, QWidget* parent)
    : QWidget(parent)
    , m_settings(settings)
    , m_title(new StyledLabel(StyledLabel::Style::headline, Tint::text, this))
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_install(new SheetButton(this))
{
    setObjectName(QStringLiteral("managerWarning"));
    m_title->setObjectName(QStringLiteral("warningTitle"));
    m_text->setObjectName(QStringLiteral("warningText"));
    m_install->setObjectName(QStringLiteral("installManager"));
    m_install->setVisible(!installerUrl.isEmpty());
    layOut();
    connect(m_install, &QPushButton::clicked, this,
            [this, installerUrl] { Q_EMIT asked(installerCommand(installerUrl)); });
    connect(&settings, &AppSettings::languageSet, this, &ManagerWarning::retranslate);
    retranslate();
}

void ManagerWarning::layOut()
{
    constexpr int iconSize = 24;
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, SettingsSection::endOfRow, 0);
    row->setSpacing(12);
    row->addWidget(new GlyphLabel(Glyph::exclamationmarkTriangleFill, Tint::orange, iconSize, this));
    row->addLayout(textColumn({m_title, m_text}), 1);
    row->addWidget(m_install, 0, Qt::AlignVCenter);
}

void ManagerWarning::retranslate()
{
    const AppLanguage language = m_settings.language.value();
    m_title->setText(platformText(PlatformText::packageManagerMissing, language));
    m_text->setText(platformText(PlatformText::packageManagerMissingIs, language));
    m_install->setText(pair(language, u"Install Homebrew", u"Installa Homebrew"));
    m_install->setAccessibleName(m_install->text());
}

} // namespace vormel

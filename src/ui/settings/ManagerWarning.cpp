#include "ui/settings/ManagerWarning.h"

#include "kit/BoundText.h"
#include "kit/Card.h"
#include "kit/GlyphLabel.h"
#include "kit/PlatformTexts.h"
#include "kit/SheetButton.h"
#include "kit/StyledLabel.h"
#include "kit/TextColumn.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString installerCommand(const QString& url)
{
    return u"/bin/bash -c \"$(curl -fsSL %1)\""_s.arg(url);
}

} // namespace

ManagerWarning::ManagerWarning(const AppSettings& settings, const QString& installerUrl, QWidget* parent)
    : QWidget(parent)
    , m_title(new StyledLabel(StyledLabel::Style::headline, Tint::text, this))
    , m_text(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_install(new SheetButton(this))
{
    setObjectName(u"managerWarning"_s);
    m_title->setObjectName(u"warningTitle"_s);
    m_text->setObjectName(u"warningText"_s);
    m_install->setObjectName(u"installManager"_s);
    m_install->setVisible(!installerUrl.isEmpty());
    layOut();
    connect(m_install, &QPushButton::clicked, this,
            [this, installerUrl] { Q_EMIT asked(installerCommand(installerUrl)); });
    bindTexts(settings);
}

void ManagerWarning::layOut()
{
    constexpr int iconSize = 24;
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, Card::endOfRow, 0);
    row->setSpacing(12);
    row->addWidget(new GlyphLabel(Glyph::exclamationmarkTriangleFill, Tint::orange, iconSize, this));
    row->addLayout(textColumn({m_title, m_text}), 1);
    row->addWidget(m_install, 0, Qt::AlignVCenter);
}

void ManagerWarning::bindTexts(const AppSettings& settings)
{
    constexpr TextPair install{u"Install Homebrew", u"Installa Homebrew"};
    bindText(m_title, &QLabel::setText, settings, platformTexts(PlatformText::packageManagerMissing));
    bindText(m_text, &QLabel::setText, settings, platformTexts(PlatformText::packageManagerMissingIs));
    bindText(m_install, &QPushButton::setText, settings, install);
    bindText(m_install, &QPushButton::setAccessibleName, settings, install);
}

} // namespace vormel

#include "ui/help/HelpView.h"

#include "kit/BoundText.h"
#include "kit/GlyphLabel.h"
#include "kit/PlatformTexts.h"
#include "kit/Separator.h"
#include "kit/StyledLabel.h"
#include "ui/help/HelpFeatureRow.h"
#include "ui/help/HelpFeatures.h"
#include "ui/help/ProgramHeader.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

HelpView::HelpView(const AppSettings& settings, QString filestore, QWidget* parent)
    : QScrollArea(parent)
    , m_settings(settings)
    , m_filestore(std::move(filestore))
    , m_name(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_version(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_kind(new StyledLabel(StyledLabel::Style::body, Tint::secondary, this))
    , m_description(new StyledLabel(StyledLabel::Style::headline, Tint::text, this))
    , m_heading(new StyledLabel(StyledLabel::Style::title, Tint::text, this))
    , m_requirement(new StyledLabel(StyledLabel::Style::caption, Tint::secondary, this))
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // everything wraps
    setBackgroundRole(QPalette::Base);
    setFocusPolicy(Qt::StrongFocus); // the keys scroll it
    nameParts();
    layOut();
    followLanguage(this, settings, [this] { showTexts(); });
}

void HelpView::nameParts()
{
    setObjectName(u"helpView"_s);
    m_name->setObjectName(u"helpName"_s);
    m_version->setObjectName(u"helpVersion"_s);
    m_kind->setObjectName(u"helpKind"_s);
    m_description->setObjectName(u"helpDescription"_s);
    m_heading->setObjectName(u"helpFeatures"_s);
    m_requirement->setObjectName(u"helpRequirement"_s);
}

void HelpView::layOut()
{
    constexpr int padding = 28;
    constexpr int spacing = 20;
    auto* page = new QWidget(this);
    page->setBackgroundRole(QPalette::Base);
    page->setAutoFillBackground(true);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(spacing);
    column->addLayout(programHeader({m_name, m_version, m_kind}, page));
    column->addWidget(new Separator(Qt::Horizontal, page));
    column->addWidget(m_description);
    column->addWidget(new Separator(Qt::Horizontal, page));
    column->addWidget(makeFeatures(page));
    column->addWidget(new Separator(Qt::Horizontal, page));
    column->addWidget(makeRequirement(page));
    column->addStretch();
    for (StyledLabel* label : {m_kind, m_description, m_requirement})
        label->setWordWrap(true);
    setWidget(page);
}

QWidget* HelpView::makeFeatures(QWidget* parent)
{
    constexpr int spacing = 16;
    auto* features = new QWidget(parent);
    auto* column = new QVBoxLayout(features);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    column->addWidget(m_heading);
    const QList<HelpFeature> all = helpFeatures(m_settings.language.value(), m_filestore);
    for (const HelpFeature& feature : all) {
        m_features << new HelpFeatureRow(feature, features);
        column->addWidget(m_features.last());
    }
    return features;
}

QWidget* HelpView::makeRequirement(QWidget* parent)
{
    constexpr int iconSize = 16;
    auto* requirement = new QWidget(parent);
    auto* row = new QHBoxLayout(requirement);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(new GlyphLabel(Glyph::desktopcomputer, Tint::secondary, iconSize, requirement));
    row->addWidget(m_requirement, 1);
    return requirement;
}

void HelpView::showTexts()
{
    const AppLanguage language = m_settings.language.value();
    m_kind->setText(platformText(PlatformText::kindOfProgram, language));
    m_description->setText(platformText(PlatformText::description, language).arg(m_filestore));
    m_heading->setText(pair(language, u"Features", u"Funzionalità"));
    m_requirement->setText(platformText(PlatformText::requirement, language));
    setAccessibleName(m_name->text() + u" — "_s + m_kind->text());
    const QList<HelpFeature> all = helpFeatures(language, m_filestore);
    for (qsizetype i = 0; i < all.size(); ++i)
        m_features.at(i)->setTexts(all.at(i));
}

} // namespace vormel

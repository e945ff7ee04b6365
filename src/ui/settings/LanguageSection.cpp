#include "ui/settings/LanguageSection.h"

#include "kit/BoundText.h"
#include "kit/SegmentedPicker.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QStringList labels()
{
    QStringList all;
    for (const AppLanguage language : allLanguages)
        all << rawValue(language);
    return all;
}

} // namespace

LanguageSection::LanguageSection(AppSettings& settings, QWidget* parent)
    : Card(settings, u"languageSection"_s, {u"Language", u"Lingua"}, parent)
    , m_settings(settings)
    , m_picker(new SegmentedPicker(labels(), this))
{
    m_picker->setObjectName(u"language"_s);
    auto* row = new QWidget(this);
    auto* columns = new QHBoxLayout(row);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->addWidget(m_picker);
    columns->addStretch();
    addRow(row);
    connect(m_picker, &SegmentedPicker::picked, this,
            [this](int index) { m_settings.language.set(allLanguages.at(static_cast<std::size_t>(index))); });
    bindText(m_picker, &QWidget::setAccessibleName, settings, {u"Language", u"Lingua"});
    followLanguage(this, settings, [this] { showLanguage(); });
}

void LanguageSection::showLanguage()
{
    m_picker->choose(static_cast<int>(m_settings.language.value()));
}

} // namespace vormel

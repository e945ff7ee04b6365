#include "ui/settings/LanguageSection.h"

#include "model/AppSettings.h"
#include "ui/settings/SegmentedPicker.h"

#include <QHBoxLayout>

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
    : SettingsSection(settings, QStringLiteral("languageSection"), parent)
    , m_picker(new SegmentedPicker(labels(), this))
{
    m_picker->setObjectName(QStringLiteral("language"));
    auto* row = new QWidget(this);
    auto* columns = new QHBoxLayout(row);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->addWidget(m_picker);
    columns->addStretch();
    addRow(row);
    connect(m_picker, &SegmentedPicker::picked, this,
            [this](int index) { this->settings().language.set(allLanguages.at(static_cast<std::size_t>(index))); });
    connect(&settings, &AppSettings::languageSet, this, &LanguageSection::showLanguage);
    showLanguage();
}

void LanguageSection::showLanguage()
{
    setHeading(pair(language(), u"Language", u"Lingua"));
    m_picker->setAccessibleName(title());
    m_picker->choose(static_cast<int>(language()));
}

} // namespace vormel

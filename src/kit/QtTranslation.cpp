#include "kit/QtTranslation.h"

#include "model/AppSettings.h"

#include <QCoreApplication>
#include <QLibraryInfo>

using namespace Qt::StringLiterals;

namespace vormel {

QtTranslation::QtTranslation(const AppSettings& settings, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
{
    connect(&settings, &AppSettings::languageSet, this, &QtTranslation::follow);
    follow();
}

void QtTranslation::follow()
{
    QCoreApplication::removeTranslator(&m_italian);
    if (m_settings.language.value() != AppLanguage::italian)
        return;
    // Read when it is first needed, as most never need it.
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!m_italian.isEmpty() || m_italian.load(u"qtbase_it"_s, folder))
        QCoreApplication::installTranslator(&m_italian);
}

} // namespace vormel

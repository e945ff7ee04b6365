#include "app/ServicesAlert.h"

#include "model/AppSettings.h"

using namespace Qt::StringLiterals;

namespace vormel {

ServicesAlert::ServicesAlert(const ServicesProblem& problem, AppLanguage language, QWidget* parent)
    : QMessageBox(parent)
{
    setObjectName(u"servicesAlert"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    setIcon(QMessageBox::Warning);
    setTextFormat(Qt::RichText);
    setWindowTitle(u"Vormel"_s);
    setText(pair(language, u"The file of services can't be used", u"Impossibile usare il file dei servizi"));
    const QString rest = pair(language, u"Until it is mended, Vormel uses its own addresses.",
                              u"Finché non è corretto, Vormel usa gli indirizzi propri.");
    // Keys come from the file, and are no markup.
    setInformativeText(u"<p>%1</p><p>%2</p>"_s.arg(problem.text(language).toHtmlEscaped(), rest));
    addButton(u"OK"_s, QMessageBox::AcceptRole);
}

void tellOfServices(const std::optional<ServicesProblem>& problem, const AppSettings& settings, QWidget& window)
{
    if (problem)
        (new ServicesAlert(*problem, settings.language.value(), &window))->show(); // the window owns it
}

} // namespace vormel

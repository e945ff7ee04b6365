#include "ui/settings/CommandAlert.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace vormel {

QString commandQuestion(const QString& command, AppLanguage language, Desktop desktop)
{
    const bool isInstaller = command.contains(u"Homebrew/install");
    return pair(language, u"This will run:", u"Verrà eseguito:") + u"\n\n"_s + command + u"\n\n"_s +
           platformText(isInstaller ? PlatformText::installerNote : PlatformText::passwordNote, language, desktop);
}

CommandAlert::CommandAlert(const QString& command, AppLanguage language, QWidget* parent)
    : QMessageBox(parent)
{
    setObjectName(u"commandAlert"_s);
    setWindowModality(Qt::WindowModal);
    setIcon(QMessageBox::NoIcon);
    setTextFormat(Qt::PlainText);
    setWindowTitle(u"Vormel"_s);
    setText(pair(language, u"Open Terminal?", u"Aprire il Terminale?"));
    setInformativeText(commandQuestion(command, language));
    QPushButton* run = addButton(pair(language, u"Open Terminal", u"Apri Terminale"), QMessageBox::AcceptRole);
    QPushButton* cancel = addButton(pair(language, u"Cancel", u"Annulla"), QMessageBox::RejectRole);
    run->setObjectName(u"runCommand"_s);
    cancel->setObjectName(u"cancelCommand"_s);
    setDefaultButton(run);
    setEscapeButton(cancel);
}

} // namespace vormel

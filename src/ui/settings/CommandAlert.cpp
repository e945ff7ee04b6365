#include "ui/settings/CommandAlert.h"

#include <QPushButton>

namespace vormel {

QString commandQuestion(const QString& command, AppLanguage language, Desktop desktop)
{
    const bool isInstaller = command.contains(u"Homebrew/install");
    return pair(language, u"This will run:", u"Verrà eseguito:") + QStringLiteral("\n\n") + command +
           QStringLiteral("\n\n") +
           platformText(isInstaller ? PlatformText::installerNote : PlatformText::passwordNote, language, desktop);
}

CommandAlert::CommandAlert(const QString& command, AppLanguage language, QWidget* parent)
    : QMessageBox(parent)
{
    setObjectName(QStringLiteral("commandAlert"));
    setWindowModality(Qt::WindowModal);
    setIcon(QMessageBox::NoIcon);
    setTextFormat(Qt::PlainText);
    setWindowTitle(QStringLiteral("Vormel"));
    setText(pair(language, u"Open Terminal?", u"Aprire il Terminale?"));
    setInformativeText(commandQuestion(command, language));
    QPushButton* run = addButton(pair(language, u"Open Terminal", u"Apri Terminale"), QMessageBox::AcceptRole);
    QPushButton* cancel = addButton(pair(language, u"Cancel", u"Annulla"), QMessageBox::RejectRole);
    run->setObjectName(QStringLiteral("runCommand"));
    cancel->setObjectName(QStringLiteral("cancelCommand"));
    setDefaultButton(run);
    setEscapeButton(cancel);
}

} // namespace vormel

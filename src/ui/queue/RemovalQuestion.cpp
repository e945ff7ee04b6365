#include "ui/queue/RemovalQuestion.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

QString questionText(RemovalQuestion::Kind kind, qsizetype count, AppLanguage language)
{
    const bool isOne = count == 1;
    if (kind == RemovalQuestion::Kind::unfinished)
        return (isOne ? pair(language, u"Remove %1 unfinished download?", u"Rimuovere %1 download non completato?")
                      : pair(language, u"Remove %1 unfinished downloads?", u"Rimuovere %1 download non completati?"))
            .arg(count);
    return (isOne ? pair(language, u"Remove the only download?", u"Rimuovere l'unico download?")
                  : pair(language, u"Remove all %1 downloads?", u"Rimuovere tutti i %1 download?").arg(count));
}

} // namespace

RemovalQuestion::RemovalQuestion(Kind kind, qsizetype count, AppLanguage language, QWidget* parent)
    : QMessageBox(parent)
{
    setObjectName(u"removalQuestion"_s);
    setWindowModality(Qt::WindowModal);
    setIcon(QMessageBox::NoIcon);
    setTextFormat(Qt::PlainText);
    setWindowTitle(u"Vormel"_s);
    setText(questionText(kind, count, language));
    setInformativeText(pair(language, u"Finished files stay on disk. For ten seconds you can undo this.",
                            u"I file completati restano su disco. Per dieci secondi puoi ripristinarli."));
    QPushButton* remove = addButton(pair(language, u"Remove", u"Rimuovi"), QMessageBox::DestructiveRole);
    QPushButton* cancel = addButton(pair(language, u"Cancel", u"Annulla"), QMessageBox::RejectRole);
    remove->setObjectName(u"confirmRemoval"_s);
    cancel->setObjectName(u"cancelRemoval"_s);
    setDefaultButton(cancel);
    setEscapeButton(cancel);
    connect(remove, &QPushButton::clicked, this, &RemovalQuestion::confirmed);
}

} // namespace vormel

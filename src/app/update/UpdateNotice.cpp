#include "app/update/UpdateNotice.h"

#include "model/AppSettings.h"
#include "platform/desktop/UrlOpener.h"

#include <QMessageBox>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace vormel {

UpdateNotice::UpdateNotice(FeedUpdater& updater, const AppSettings& settings, UrlOpener& urlOpener, QWidget& window)
    : m_settings(settings)
    , m_urlOpener(urlOpener)
    , m_window(window)
    , m_currentVersion(updater.currentVersion().text())
{
    connect(&updater, &FeedUpdater::updateFound, this, &UpdateNotice::tellOfUpdate);
    connect(&updater, &FeedUpdater::upToDate, this, &UpdateNotice::tellUpToDate);
    connect(&updater, &FeedUpdater::checkFailed, this, &UpdateNotice::tellFailure);
}

QString UpdateNotice::words(QStringView english, QStringView italian) const
{
    return pair(m_settings.language.value(), english, italian);
}

void UpdateNotice::tellOfUpdate(const AppcastItem& update)
{
    QMessageBox& box = newBox(words(u"A new version is available", u"È disponibile una nuova versione"),
                              words(u"Vormel %1 is available. You have %2.", u"È disponibile Vormel %1. Hai la %2.")
                                  .arg(update.version.text(), m_currentVersion));
    box.setObjectName(u"updateAvailable"_s);
    box.addButton(words(u"Later", u"Più tardi"), QMessageBox::RejectRole)->setObjectName(u"later"_s);
    auto* const download = box.addButton(words(u"Download", u"Scarica"), QMessageBox::AcceptRole);
    download->setObjectName(u"download"_s);
    box.setDefaultButton(download);
    connect(download, &QPushButton::clicked, this, [this, page = update.page] { m_urlOpener.open(page); });
    box.show();
}

void UpdateNotice::tellUpToDate()
{
    QMessageBox& box = newBox(
        words(u"You're up to date", u"Vormel è aggiornato"),
        words(u"Vormel %1 is the newest version.", u"Vormel %1 è la versione più recente.").arg(m_currentVersion));
    box.setObjectName(u"upToDate"_s);
    box.addButton(u"OK"_s, QMessageBox::AcceptRole);
    box.show();
}

void UpdateNotice::tellFailure(FeedUpdater::Failure failure)
{
    const QString reason =
        failure == FeedUpdater::Failure::unreachable
            ? words(u"The update server could not be reached. Check your connection and try again.",
                    u"Impossibile raggiungere il server degli aggiornamenti. Controlla la connessione e riprova.")
            : words(u"The update server gave an answer that could not be used. Try again later.",
                    u"Il server degli aggiornamenti ha dato una risposta inutilizzabile. Riprova più tardi.");
    QMessageBox& box = newBox(words(u"Couldn't check for updates", u"Impossibile cercare aggiornamenti"), reason);
    box.setObjectName(u"updateCheckFailed"_s);
    box.setIcon(QMessageBox::Warning);
    box.addButton(u"OK"_s, QMessageBox::AcceptRole);
    box.show();
}

QMessageBox& UpdateNotice::newBox(const QString& headline, const QString& text)
{
    delete m_box;
    m_box = new QMessageBox(QMessageBox::Information, u"Vormel"_s, headline, QMessageBox::NoButton, &m_window);
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    m_box->setModal(false);
    m_box->setTextFormat(Qt::PlainText); // a version comes from outside
    m_box->setInformativeText(text.toHtmlEscaped());
    return *m_box;
}

} // namespace vormel

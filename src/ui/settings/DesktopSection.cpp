#include "ui/settings/DesktopSection.h"

#include "ui/settings/ToggleRow.h"

using namespace Qt::StringLiterals;

namespace vormel {

DesktopSection::DesktopSection(AppSettings& settings, QWidget* parent)
    : Card(settings, u"desktopSection"_s, {u"Desktop", u"Desktop"}, parent)
{
    auto* notify = new ToggleRow(settings, &AppSettings::notifyWhenDone, u"notifyWhenDone"_s,
                                 {u"Notify when downloads end", u"Avvisa quando i download terminano"}, this);
    notify->setNote({u"Only while another window is in front.", u"Solo mentre è in primo piano un'altra finestra."},
                    true);
    auto* awake = new ToggleRow(settings, &AppSettings::keepAwake, u"keepAwake"_s,
                                {u"Keep the computer awake", u"Tieni sveglio il computer"}, this);
    awake->setNote({u"While files are downloaded, verified or extracted. The screen may still turn off.",
                    u"Durante download, verifica ed estrazione. Lo schermo può comunque spegnersi."},
                   true);
    auto* launcher = new ToggleRow(settings, &AppSettings::showLauncherProgress, u"showLauncherProgress"_s,
                                   {u"Show progress on the launcher icon", u"Mostra l'avanzamento sull'icona"}, this);
    launcher->setNote({u"Where the desktop supports it.", u"Se il desktop lo consente."}, true);
    auto* clipboard =
        new ToggleRow(settings, &AppSettings::watchClipboard, u"watchClipboard"_s,
                      {u"Watch the clipboard for links", u"Controlla gli appunti in cerca di link"}, this);
    clipboard->setNote({u"Enable to be offered links as you copy them. Nothing is added by itself.",
                        u"Abilita per farti proporre i link che copi. Nulla viene aggiunto da solo."},
                       false);
    for (ToggleRow* row : {notify, awake, launcher, clipboard})
        addRow(row);
}

} // namespace vormel

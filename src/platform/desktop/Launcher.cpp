#include "platform/desktop/Launcher.h"

#include <QDBusMessage>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace vormel {

void DesktopLauncher::show(const LauncherState& state)
{
    QDBusMessage update =
        QDBusMessage::createSignal(u"/org/vormel/Vormel"_s, u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
    update << u"application://org.vormel.Vormel.desktop"_s
           << QVariantMap{{u"progress"_s, state.progress.value_or(0)},
                          {u"progress-visible"_s, state.progress.has_value()},
                          {u"count"_s, static_cast<qlonglong>(state.count)},
                          {u"count-visible"_s, state.count > 0}};
    (void)m_bus.send(update);
}

} // namespace vormel

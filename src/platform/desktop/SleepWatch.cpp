#include "platform/desktop/SleepWatch.h"

using namespace Qt::StringLiterals;

namespace vormel {

SleepWatch::SleepWatch(QObject* parent)
    : QObject(parent)
{}

void SleepWatch::follow(QDBusConnection bus)
{
    if (bus.isConnected())
        bus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s,
                    u"PrepareForSleep"_s, this, SLOT(prepareForSleep(bool)));
}

void SleepWatch::prepareForSleep(bool isGoingToSleep)
{
    if (!isGoingToSleep)
        Q_EMIT wokeUp();
}

} // namespace vormel

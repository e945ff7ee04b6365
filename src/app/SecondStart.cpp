#include "app/SecondStart.h"

#include "app/DesktopActivation.h"
#include "platform/desktop/InstanceMessage.h"
#include "platform/desktop/SingleInstance.h"

#include <QDeadlineTimer>

#include <thread>

namespace vormel {

namespace {

using Answer = DesktopActivation::Answer;

Answer ask(const SingleInstance& instance, const QDBusConnection& bus, const QStringList& addresses,
           const QString& token)
{
    const Answer answer = DesktopActivation::askRunning(bus, addresses, token);
    // Who is silent may have the addresses by now, and would get them twice.
    if (answer == Answer::reached || (answer == Answer::silent && !addresses.isEmpty()))
        return answer;
    return instance.askFirstToShow(addresses.join(u'\n')) ? Answer::reached : Answer::nobody;
}

} // namespace

SecondStart settleSecondStart(SingleInstance& instance, const QDBusConnection& bus, const QStringList& addresses,
                              const QString& token, std::chrono::milliseconds patience)
{
    constexpr std::chrono::milliseconds pause(250);
    if (addresses.join(u'\n').toUtf8().size() > InstanceMessage::maxTextBytes)
        return SecondStart::tooMuch;
    const QDeadlineTimer end(patience);
    while (!instance.tryToBecomeFirst()) {
        const Answer answer = ask(instance, bus, addresses, token);
        if (answer == Answer::reached)
            return SecondStart::handedOver;
        if (answer == Answer::silent || end.hasExpired())
            return SecondStart::unanswered;
        std::this_thread::sleep_for(pause);
    }
    return SecondStart::becameFirst;
}

} // namespace vormel

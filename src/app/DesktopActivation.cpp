#include "app/DesktopActivation.h"

#include <QDBusError>
#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString busName = u"org.vormel.Vormel"_s;
const QString objectPath = u"/org/vormel/Vormel"_s;
const QString interface = u"org.freedesktop.Application"_s;
const QString tokenOfWayland = u"activation-token"_s;
const QString tokenOfX11 = u"desktop-startup-id"_s;

QString tokenOf(const QVariantMap& platformData)
{
    const QString token = platformData.value(tokenOfWayland).toString();
    return token.isEmpty() ? platformData.value(tokenOfX11).toString() : token;
}

} // namespace

DesktopActivation::DesktopActivation(QDBusConnection bus, QObject* parent)
    : QObject(parent)
    , m_bus(std::move(bus))
{
    // The object comes first, so that whoever sees the name finds it.
    m_hasName = m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots) &&
                m_bus.registerService(busName);
}

DesktopActivation::~DesktopActivation()
{
    if (m_hasName)
        m_bus.unregisterService(busName);
}

DesktopActivation::Answer DesktopActivation::askRunning(const QDBusConnection& bus, const QStringList& uris,
                                                        const QString& token)
{
    constexpr int patience = 2000;
    const QString method = uris.isEmpty() ? u"Activate"_s : u"Open"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, interface, method);
    call.setAutoStartService(false);
    QVariantMap platformData;
    if (!token.isEmpty())
        platformData = {{tokenOfWayland, token}, {tokenOfX11, token}};
    if (!uris.isEmpty())
        call << uris;
    call << platformData;
    const QDBusMessage answer = bus.call(call, QDBus::Block, patience);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return Answer::reached;
    return QDBusError(answer).type() == QDBusError::NoReply ? Answer::silent : Answer::nobody;
}

void DesktopActivation::Activate(const QVariantMap& platformData)
{
    Q_EMIT showRequested(tokenOf(platformData));
}

void DesktopActivation::Open(const QStringList& uris, const QVariantMap& platformData)
{
    Q_EMIT openRequested(uris, tokenOf(platformData));
}

void DesktopActivation::ActivateAction(const QString& /*name*/, const QVariantList& /*parameters*/,
                                       const QVariantMap& /*platformData*/)
{}

} // namespace vormel

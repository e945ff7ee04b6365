#include "app/DesktopActivation.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

const QString busName = u"org.vormel.Vormel"_s;
const QString objectPath = u"/org/vormel/Vormel"_s;
const QString interface = u"org.freedesktop.Application"_s;
const QString tokenOfWayland = u"activation-token"_s;
const QString tokenOfX11 = u"desktop-startup-id"_s;

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

bool DesktopActivation::askRunningToShow(const QDBusConnection& bus, const QString& token)
{
    constexpr int patience = 2000;
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, interface, u"Activate"_s);
    call.setAutoStartService(false);
    QVariantMap platformData;
    if (!token.isEmpty())
        platformData = {{tokenOfWayland, token}, {tokenOfX11, token}};
    call << platformData;
    return bus.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

void DesktopActivation::Activate(const QVariantMap& platformData)
{
    const QString token = platformData.value(tokenOfWayland).toString();
    Q_EMIT showRequested(token.isEmpty() ? platformData.value(tokenOfX11).toString() : token);
}

void DesktopActivation::Open(const QStringList& /*uris*/, const QVariantMap& /*platformData*/) {}

void DesktopActivation::ActivateAction(const QString& /*name*/, const QVariantList& /*parameters*/,
                                       const QVariantMap& /*platformData*/)
{}

} // namespace vormel

#include "Prompter.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <utility>

using namespace Qt::StringLiterals;

namespace vormel::fixtures {

Prompter::Prompter(QDBusConnection bus)
    : m_bus(std::move(bus))
{
    m_bus.registerObject(u"/org/gnome/keyring/Prompter"_s, this, QDBusConnection::ExportScriptableSlots);
    m_bus.registerService(u"org.gnome.keyring.SystemPrompter"_s);
}

void Prompter::BeginPrompting(const QDBusObjectPath& callback)
{
    m_asker = message().service();
    m_callback = callback.path();
    tell(u"PromptReady"_s, {QString(), QVariantMap(), m_seal.opening()});
}

void Prompter::PerformPrompt(const QDBusObjectPath& /*callback*/, const QString& /*type*/,
                             const QVariantMap& /*properties*/, const QString& exchange)
{
    m_seal.agree(exchange);
    m_isOpen = true;
    ++m_shown;
}

void Prompter::StopPrompting(const QDBusObjectPath& /*callback*/)
{
    m_isOpen = false;
    tell(u"PromptDone"_s, {});
}

void Prompter::dismiss()
{
    m_isOpen = false;
    tell(u"PromptReady"_s, {u"no"_s, QVariantMap(), m_seal.opening()});
}

void Prompter::answer(const QByteArray& password)
{
    m_isOpen = false;
    tell(u"PromptReady"_s, {u"yes"_s, QVariantMap(), m_seal.sealed(password)});
}

void Prompter::tell(const QString& method, const QVariantList& arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_asker, m_callback, u"org.gnome.keyring.internal.Prompter.Callback"_s, method);
    call.setArguments(arguments);
    // Later, as the keyring wants to hear the end of its own call first.
    QMetaObject::invokeMethod(
        this, [this, call] { m_bus.asyncCall(call); }, Qt::QueuedConnection);
}

} // namespace vormel::fixtures

#include "RealKeyring.h"

#include "fixtures/EventLoop.h"
#include "platform/async/GlibObject.h"
#include "platform/secrets/KeyringSession.h"

#include <QDBusConnectionInterface>
#include <QFile>

#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace vormel::fixtures {

namespace {

constexpr const char* busName = "org.freedesktop.secrets";

std::shared_ptr<GHashTable> attributesOf(const QString& key)
{
    GHashTable* const table = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free);
    g_hash_table_insert(table, g_strdup("xdg:schema"), g_strdup("org.vormel.Vormel"));
    g_hash_table_insert(table, g_strdup("account"), g_strdup(key.toUtf8().constData()));
    return {table, &g_hash_table_unref};
}

RealKeyring::Item itemOf(SecretItem* found)
{
    RealKeyring::Item item;
    if (SecretValue* const value = secret_item_get_secret(found)) {
        gsize size = 0;
        const gchar* const bytes = secret_value_get(value, &size);
        item.secret = QByteArray(bytes, static_cast<qsizetype>(size));
        secret_value_unref(value);
    }
    GHashTable* const attributes = secret_item_get_attributes(found);
    const auto keep = [](gpointer name, gpointer value, gpointer kept) {
        static_cast<RealKeyring::Item*>(kept)->attributes.insert(QString::fromUtf8(static_cast<char*>(name)),
                                                                 QString::fromUtf8(static_cast<char*>(value)));
    };
    g_hash_table_foreach(attributes, keep, &item);
    g_hash_table_unref(attributes);
    return item;
}

QStringList daemonArguments()
{
    return {u"--foreground"_s, u"--components=secrets"_s, u"--unlock"_s};
}

} // namespace

RealKeyring::RealKeyring(const Sandbox& sandbox, const PrivateBus& bus)
    : m_bus(bus)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
    environment.insert(u"HOME"_s, sandbox.root());
    environment.insert(u"XDG_DATA_HOME"_s, sandbox.path(u"data"_s));
    environment.insert(u"XDG_RUNTIME_DIR"_s, sandbox.root());
    m_daemon.setProcessEnvironment(environment);
    m_daemon.setProcessChannelMode(QProcess::MergedChannels);
    endWithTheTest(m_daemon);
}

RealKeyring::~RealKeyring()
{
    kill();
}

bool RealKeyring::start()
{
    m_daemon.start(u"gnome-keyring-daemon"_s, daemonArguments());
    m_daemon.write(password);
    m_daemon.closeWriteChannel();
    return waitUntil([this] { return isOnBus(); });
}

void RealKeyring::letTheBusStartIt(const Sandbox& sandbox)
{
    const QString home = sandbox.root();
    // The bus ends what it has started when it goes, as the connection breaks.
    const QString script = u"#!/bin/sh\nexport HOME='%1' XDG_DATA_HOME='%1/data' XDG_RUNTIME_DIR='%1'\n"
                           "printf %s '%2' | exec gnome-keyring-daemon %3\n"_s;
    const QString path = sandbox.write(
        u"start-keyring"_s, script.arg(home, QString::fromLatin1(password), daemonArguments().join(u' ')).toUtf8());
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    sandbox.write(u"services/org.freedesktop.secrets.service"_s,
                  (u"[D-BUS Service]\nName="_s + QString::fromLatin1(busName) + u"\nExec="_s + path + u'\n').toUtf8());
}

bool RealKeyring::isOnBus() const
{
    return m_bus.connection().interface()->isServiceRegistered(QString::fromLatin1(busName)).value();
}

void RealKeyring::signal(int number) const
{
    const uint process = m_bus.connection().interface()->servicePid(QString::fromLatin1(busName)).value();
    // No process is every process of the test's.
    if (process == 0)
        ADD_FAILURE() << "there is no keyring";
    else
        ::kill(static_cast<pid_t>(process), number);
}

void RealKeyring::hold() const
{
    signal(SIGSTOP);
}

void RealKeyring::kill()
{
    // One that the bus has started is nobody's but the bus's.
    if (m_daemon.state() == QProcess::NotRunning && m_bus.connection().isConnected() && isOnBus())
        signal(SIGKILL);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

std::shared_ptr<SecretService> RealKeyring::service() const
{
    constexpr int flags =
        G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
    const auto connection = adopted(g_dbus_connection_new_for_address_sync(
        m_bus.address().toUtf8().constData(), static_cast<GDBusConnectionFlags>(flags), nullptr, nullptr, nullptr));
    gpointer const made = g_initable_new(keyringSessionType(), nullptr, nullptr, "g-connection", connection.get(),
                                         "flags", SECRET_SERVICE_OPEN_SESSION, nullptr);
    return adopted(SECRET_SERVICE(made));
}

void RealKeyring::lock() const
{
    const std::shared_ptr<SecretService> open = service();
    const auto collection = adopted(secret_collection_for_alias_sync(open.get(), SECRET_COLLECTION_DEFAULT,
                                                                     SECRET_COLLECTION_NONE, nullptr, nullptr));
    GList* const objects = g_list_append(nullptr, collection.get());
    secret_service_lock_sync(open.get(), objects, nullptr, nullptr, nullptr);
    g_list_free(objects);
}

void RealKeyring::add(const QString& key, const QByteArray& secret) const
{
    const std::shared_ptr<SecretService> open = service();
    const auto collection = adopted(secret_collection_for_alias_sync(open.get(), SECRET_COLLECTION_DEFAULT,
                                                                     SECRET_COLLECTION_NONE, nullptr, nullptr));
    const std::unique_ptr<SecretValue, decltype(&secret_value_unref)> value(
        secret_value_new(secret.constData(), secret.size(), "text/plain"), &secret_value_unref);
    static_cast<void>(adopted(secret_item_create_sync(collection.get(), nullptr, attributesOf(key).get(), "by hand",
                                                      value.get(), SECRET_ITEM_CREATE_NONE, nullptr, nullptr)));
}

std::vector<RealKeyring::Item> RealKeyring::items(const QString& key) const
{
    const std::shared_ptr<SecretService> open = service();
    constexpr auto all = static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS);
    GList* const found =
        secret_service_search_sync(open.get(), nullptr, attributesOf(key).get(), all, nullptr, nullptr);
    std::vector<Item> items;
    for (const GList* link = found; link; link = link->next)
        items.push_back(itemOf(static_cast<SecretItem*>(link->data)));
    g_list_free_full(found, g_object_unref);
    return items;
}

} // namespace vormel::fixtures

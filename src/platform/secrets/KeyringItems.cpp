#include "platform/secrets/KeyringItems.h"

#include "platform/async/GlibObject.h"

#include <algorithm>
#include <utility>

namespace vormel {

namespace {

constexpr const char* keyAttribute = "account";

/// By this the keyring tells our items from those of others.
const SecretSchema schema = [] {
    SecretSchema made = {};
    made.name = "org.vormel.Vormel";
    made.flags = SECRET_SCHEMA_NONE;
    made.attributes[0] = {keyAttribute, SECRET_SCHEMA_ATTRIBUTE_STRING};
    return made;
}();

using Attributes = std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)>;

Attributes attributesOf(const QByteArray& key)
{
    return {secret_attributes_build(&schema, keyAttribute, key.constData(), nullptr), &g_hash_table_unref};
}

using Value = std::unique_ptr<SecretValue, decltype(&secret_value_unref)>;

/// Whatever bytes somebody has put there become text.
QString textOf(SecretItem* item)
{
    const Value value(secret_item_get_secret(item), [](gpointer last) {
        if (last)
            secret_value_unref(last);
    });
    if (!value)
        return {};
    gsize size = 0;
    const gchar* const bytes = secret_value_get(value.get(), &size);
    return QString::fromUtf8(bytes, static_cast<qsizetype>(size));
}

using Item = std::shared_ptr<SecretItem>;

bool isLocked(const Item& item)
{
    return secret_item_get_locked(item.get()) != FALSE;
}

std::vector<Item> adoptedItems(GList* list)
{
    std::vector<Item> items;
    for (const GList* link = list; link; link = link->next)
        items.push_back(adopted(static_cast<SecretItem*>(link->data)));
    g_list_free(list);
    return items;
}

/// What an error means. Those of the service itself are answers; all others come from the way to it.
KeyringEnd endOf(const GlibError& error)
{
    if (!error.get())
        return KeyringEnd::done;
    const bool isAnswer =
        error.get()->domain == SECRET_ERROR || g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
    return isAnswer ? KeyringEnd::refused : KeyringEnd::unanswered;
}

} // namespace

KeyringItems::KeyringItems(GlibContext& glib, Clock& clock, std::shared_ptr<SecretService> service, const QString& key)
    : m_service(std::move(service))
    , m_key(key.toUtf8())
    , m_calls(glib)
    , m_limit(clock.after(patience, [this] { m_calls.giveUp(); }))
{}

QCoro::Task<std::optional<KeyringItems::Password>> KeyringItems::load()
{
    const std::optional<std::vector<Item>> items = co_await find(SECRET_SEARCH_LOAD_SECRETS);
    if (!items)
        co_return std::nullopt;
    if (items->empty())
        co_return Password{};
    const Item& item = items->front();
    m_locked = isLocked(item) ? item : nullptr;
    co_return Password{textOf(item.get()), m_locked != nullptr};
}

QCoro::Task<std::optional<std::vector<KeyringItems::Item>>> KeyringItems::find(SecretSearchFlags flags)
{
    const GlibCalls::Start start = [&](GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
        const Attributes attributes = attributesOf(m_key);
        secret_service_search(m_service.get(), &schema, attributes.get(), flags, cancellable, callback, data);
    };
    const GlibCalls::Result result = co_await m_calls.run(start);
    if (!result)
        co_return std::vector<Item>();
    GlibError error;
    std::vector<Item> items = adoptedItems(secret_service_search_finish(m_service.get(), result.get(), error.place()));
    if (endOf(error) == KeyringEnd::unanswered)
        co_return std::nullopt;
    co_return items;
}

QCoro::Task<KeyringEnd> KeyringItems::unlock()
{
    const GlibCalls::Start start = [&](GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
        GList* const objects = g_list_append(nullptr, m_locked.get());
        secret_service_unlock(m_service.get(), objects, cancellable, callback, data);
        g_list_free(objects);
    };
    const GlibCalls::Result result = co_await m_calls.run(start);
    if (!result)
        co_return KeyringEnd::refused;
    GlibError error;
    const gint count = secret_service_unlock_finish(m_service.get(), result.get(), nullptr, error.place());
    const KeyringEnd end = endOf(error);
    co_return end == KeyringEnd::done&& count == 0 ? KeyringEnd::refused : end;
}

QCoro::Task<KeyringEnd> KeyringItems::removeAll()
{
    const std::optional<std::vector<Item>> items =
        co_await find(static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK));
    if (!items)
        co_return KeyringEnd::unanswered;
    if (m_calls.areGivenUp() || (!items->empty() && std::all_of(items->begin(), items->end(), &isLocked)))
        co_return KeyringEnd::refused;
    for (const Item& item : *items) {
        if (isLocked(item))
            continue;
        const KeyringEnd end = co_await remove(item);
        if (end == KeyringEnd::unanswered)
            co_return end;
    }
    co_return KeyringEnd::done;
}

QCoro::Task<KeyringEnd> KeyringItems::remove(Item item)
{
    const GlibCalls::Start start = [&](GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
        secret_item_delete(item.get(), cancellable, callback, data);
    };
    const GlibCalls::Result result = co_await m_calls.run(start);
    if (!result)
        co_return KeyringEnd::refused;
    GlibError error;
    const bool isDone = secret_item_delete_finish(item.get(), result.get(), error.place()) != FALSE;
    const KeyringEnd end = endOf(error);
    co_return end == KeyringEnd::done && !isDone ? KeyringEnd::refused : end;
}

QCoro::Task<KeyringEnd> KeyringItems::add(QString secret)
{
    const GlibCalls::Start start = [&](GCancellable* cancellable, GAsyncReadyCallback callback, gpointer data) {
        const Attributes attributes = attributesOf(m_key);
        const QByteArray bytes = secret.toUtf8();
        const Value value(secret_value_new(bytes.constData(), bytes.size(), "text/plain"), &secret_value_unref);
        const QByteArray label = "Vormel: " + m_key;
        secret_service_store(m_service.get(), &schema, attributes.get(), SECRET_COLLECTION_DEFAULT, label.constData(),
                             value.get(), cancellable, callback, data);
    };
    const GlibCalls::Result result = co_await m_calls.run(start);
    if (!result)
        co_return KeyringEnd::refused;
    GlibError error;
    const bool isDone = secret_service_store_finish(m_service.get(), result.get(), error.place()) != FALSE;
    const KeyringEnd end = endOf(error);
    co_return end == KeyringEnd::done && !isDone ? KeyringEnd::refused : end;
}

} // namespace vormel

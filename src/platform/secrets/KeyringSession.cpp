#include "platform/secrets/KeyringSession.h"

#include "platform/async/GlibObject.h"

#include <libsecret/secret.h>

namespace vormel {

namespace {

/// The parent names the session bus as the last step of its construction, and no later step could take that back.
GObject* construct(GType type, guint count, GObjectConstructParam* properties)
{
    GObject* const made = G_OBJECT_CLASS(g_type_class_peek(SECRET_TYPE_SERVICE))->constructor(type, count, properties);
    g_object_set(made, "g-bus-type", G_BUS_TYPE_NONE, nullptr);
    return made;
}

void onAnswered(GObject* prompt, GAsyncResult* result, gpointer data)
{
    const auto task = adopted(G_TASK(data));
    GError* error = nullptr;
    GVariant* const answer = secret_prompt_perform_finish(SECRET_PROMPT(prompt), result, &error);
    if (answer)
        g_task_return_pointer(task.get(), answer, reinterpret_cast<GDestroyNotify>(&g_variant_unref));
    else if (error)
        g_task_return_error(task.get(), error);
    else
        g_task_return_new_error(task.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED, "The prompt went away");
}

void prompt(SecretService* session, SecretPrompt* prompt, const GVariantType* type, GCancellable* cancellable,
            GAsyncReadyCallback callback, gpointer data)
{
    GTask* const task = g_task_new(session, cancellable, callback, data);
    // Never cancelled, as there are keyrings that crash when a prompt is taken back.
    secret_prompt_perform(prompt, nullptr, type, nullptr, &onAnswered, task);
}

GVariant* finishPrompt(SecretService* /*session*/, GAsyncResult* result, GError** error)
{
    return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

void prepare(gpointer type, gpointer /*data*/)
{
    G_OBJECT_CLASS(type)->constructor = &construct;
    SECRET_SERVICE_CLASS(type)->prompt_async = &prompt;
    SECRET_SERVICE_CLASS(type)->prompt_finish = &finishPrompt;
}

} // namespace

GType keyringSessionType()
{
    static const GType type =
        g_type_register_static_simple(SECRET_TYPE_SERVICE, "VormelKeyringSession", sizeof(SecretServiceClass), &prepare,
                                      sizeof(SecretService), nullptr, G_TYPE_FLAG_NONE);
    return type;
}

} // namespace vormel

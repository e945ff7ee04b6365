#include "platform/async/Spawn.h"

#include <QLoggingCategory>

#include <exception>

namespace vormel {

namespace {

QCoro::Task<> watched(QCoro::Task<> task)
{
    try {
        co_await task;
    } catch (const std::exception& error) {
        qCritical("A background task ended with: %s", error.what());
    } catch (...) {
        qCritical("A background task ended with an unknown exception");
    }
}

} // namespace

void spawn(QCoro::Task<> task)
{
    watched(std::move(task));
}

} // namespace vormel

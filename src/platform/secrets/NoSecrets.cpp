#include "platform/secrets/NoSecrets.h"

namespace vormel {

QCoro::Task<> NoSecrets::save(QString /*key*/, QString /*secret*/)
{
    co_return;
}

QCoro::Task<QString> NoSecrets::load(QString /*key*/)
{
    co_return {};
}

QCoro::Task<> NoSecrets::remove(QString /*key*/)
{
    co_return;
}

} // namespace vormel

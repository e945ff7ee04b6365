#pragma once

#include "platform/secrets/SecretStore.h"

namespace vormel {

/// Where there is nothing to keep passwords in.
class NoSecrets final : public SecretStore
{
public:
    [[nodiscard]] Place place() const override { return Place::nowhere; }
    [[nodiscard]] QCoro::Task<> save(QString key, QString secret) override;
    [[nodiscard]] QCoro::Task<QString> load(QString key) override;
    [[nodiscard]] QCoro::Task<> remove(QString key) override;
};

} // namespace vormel

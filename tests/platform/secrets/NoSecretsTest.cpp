#include "platform/secrets/NoSecrets.h"

#include <qcoro/qcorotask.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace vormel;

TEST(NoSecrets, ForgetAtOnceAndSaySo)
{
    NoSecrets secrets;
    QCoro::waitFor(secrets.save(u"key"_s, u"secret"_s));
    EXPECT_EQ(QCoro::waitFor(secrets.load(u"key"_s)), u"");
    QCoro::waitFor(secrets.remove(u"key"_s));
    EXPECT_EQ(secrets.place(), SecretStore::Place::nowhere);
}

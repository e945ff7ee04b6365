#include "platform/secrets/FallbackSecrets.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"
#include "platform/async/SharedEventual.h"
#include "platform/secrets/FileSecrets.h"
#include "platform/storage/FileWriter.h"

#include <QMap>
#include <qcoro/qcorotask.h>

#include <gmock/gmock.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Place = SecretStore::Place;
using Kept = QMap<QString, QString>;

/// A keyring that comes, goes and refuses as the test wants it.
class Keyring final : public SecretStore
{
public:
    Kept kept;
    QStringList saved; ///< keys, in the order in which they came
    QString refused;   ///< the key that the user does not let in
    bool endsWithNextSave = false;
    std::optional<SharedEventual<bool>> isBusy; ///< whoever saves waits for it

    void setThere(bool isThere)
    {
        m_isThere = isThere;
        Q_EMIT placeChanged();
        fixtures::turnEventLoop();
    }
    [[nodiscard]] Place place() const override { return m_isThere ? Place::keyring : Place::nowhere; }
    [[nodiscard]] QCoro::Task<> save(QString key, QString secret) override
    {
        saved << key;
        if (isBusy)
            co_await *isBusy;
        if (endsWithNextSave)
            m_isThere = false;
        if (m_isThere && key != refused)
            kept.insert(key, secret);
    }
    [[nodiscard]] QCoro::Task<QString> load(QString key) override { co_return m_isThere ? kept.value(key) : QString(); }
    [[nodiscard]] QCoro::Task<> remove(QString key) override
    {
        if (m_isThere)
            kept.remove(key);
        co_return;
    }

private:
    bool m_isThere = false;
};

class FallbackSecretsTest : public ::testing::Test
{
protected:
    FallbackSecretsTest()
    {
        QObject::connect(&*secrets, &SecretStore::placeChanged, &*secrets,
                         [this] { places.push_back(secrets->place()); });
    }
    QString load(const QString& key) { return QCoro::waitFor(secrets->load(key)); }
    void save(const QString& key, const QString& secret) { QCoro::waitFor(secrets->save(key, secret)); }

    fixtures::Sandbox sandbox;
    FileWriter writer;
    Keyring keyring;
    FileSecrets file{sandbox.path(u"secrets/passwords.json"_s), writer};
    std::optional<FallbackSecrets> secrets{std::in_place, keyring, file};
    std::vector<Place> places;
};

TEST_F(FallbackSecretsTest, KeepsInTheFileWhatNoKeyringTakes)
{
    save(u"key"_s, u"secret"_s);
    EXPECT_EQ(load(u"key"_s), u"secret");
    EXPECT_EQ(file.keys(), QStringList{u"key"_s});
    EXPECT_EQ(secrets->place(), Place::ownFile);
}

TEST_F(FallbackSecretsTest, KeepsInTheKeyringWhatItTakes)
{
    keyring.setThere(true);
    save(u"key"_s, u"secret"_s);
    EXPECT_EQ(load(u"key"_s), u"secret");
    EXPECT_EQ(keyring.kept, (Kept{{u"key"_s, u"secret"_s}}));
    EXPECT_THAT(file.keys(), testing::IsEmpty());
    EXPECT_EQ(places, std::vector{Place::keyring});
}

TEST_F(FallbackSecretsTest, KeepsInTheFileWhatTheKeyringEndsOver)
{
    keyring.setThere(true);
    keyring.endsWithNextSave = true;
    save(u"key"_s, u"secret"_s);
    EXPECT_EQ(load(u"key"_s), u"secret");
    EXPECT_EQ(file.keys(), QStringList{u"key"_s});
}

TEST_F(FallbackSecretsTest, MovesWhatTheFileHasWhenAKeyringAppears)
{
    save(u"a"_s, u"first"_s);
    save(u"b"_s, {});
    keyring.kept = {{u"a"_s, u"older"_s}};
    keyring.setThere(true);
    EXPECT_EQ(keyring.kept, (Kept{{u"a"_s, u"first"_s}, {u"b"_s, {}}}));
    EXPECT_THAT(file.keys(), testing::IsEmpty());
    EXPECT_EQ(load(u"a"_s), u"first");
}

TEST_F(FallbackSecretsTest, MovesWhatTheFileHasAtTheStart)
{
    save(u"a"_s, u"first"_s);
    secrets.reset();
    keyring.setThere(true);
    secrets.emplace(keyring, file);
    fixtures::turnEventLoop();
    EXPECT_EQ(keyring.kept, (Kept{{u"a"_s, u"first"_s}}));
    EXPECT_THAT(file.keys(), testing::IsEmpty());
}

TEST_F(FallbackSecretsTest, LeavesInTheFileWhatTheKeyringDoesNotGiveBackAndAsksNoFurther)
{
    save(u"a"_s, u"first"_s);
    save(u"b"_s, u"second"_s);
    save(u"c"_s, u"third"_s);
    keyring.saved.clear();
    keyring.refused = u"b"_s;
    keyring.setThere(true);
    EXPECT_EQ(keyring.saved, (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(file.keys(), (QStringList{u"b"_s, u"c"_s}));
    EXPECT_EQ(load(u"b"_s), u"second");
}

TEST_F(FallbackSecretsTest, LeavesInTheFileWhatTheKeyringEndsOver)
{
    save(u"a"_s, u"first"_s);
    keyring.endsWithNextSave = true;
    keyring.setThere(true);
    EXPECT_EQ(file.keys(), QStringList{u"a"_s});
}

TEST_F(FallbackSecretsTest, MovesNothingOverWhatIsSavedMeanwhile)
{
    save(u"a"_s, u"first"_s);
    keyring.isBusy.emplace();
    keyring.setThere(true);
    QCoro::Task<> saving = secrets->save(u"a"_s, u"newer"_s);
    fixtures::turnEventLoop();
    keyring.isBusy->deliver(true);
    QCoro::waitFor(saving);
    EXPECT_EQ(load(u"a"_s), u"newer");
    EXPECT_EQ(keyring.kept, (Kept{{u"a"_s, u"newer"_s}}));
    EXPECT_THAT(file.keys(), testing::IsEmpty());
}

TEST_F(FallbackSecretsTest, RemovesFromBoth)
{
    save(u"a"_s, u"first"_s);
    keyring.refused = u"a"_s;
    keyring.kept = {{u"a"_s, u"older"_s}};
    keyring.setThere(true);
    QCoro::waitFor(secrets->remove(u"a"_s));
    EXPECT_EQ(load(u"a"_s), u"");
    EXPECT_THAT(file.keys(), testing::IsEmpty());
    EXPECT_THAT(keyring.kept, testing::IsEmpty());
}

TEST_F(FallbackSecretsTest, MayEndInTheMiddleOfAMove)
{
    save(u"a"_s, u"first"_s);
    keyring.isBusy.emplace();
    keyring.setThere(true);
    secrets.reset();
    keyring.isBusy->deliver(true);
    fixtures::turnEventLoop();
    EXPECT_EQ(file.keys(), QStringList{u"a"_s});
}

} // namespace
} // namespace vormel

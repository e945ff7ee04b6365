#include "platform/secrets/FileSecrets.h"

#include "fixtures/Sandbox.h"
#include "platform/storage/FileWriter.h"

#include <QFile>
#include <QFileInfo>
#include <qcoro/qcorotask.h>

#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

const QString file = u"config/secrets/passwords.json"_s;

unsigned modeOf(const QString& path)
{
    constexpr unsigned permissions = 07777;
    struct stat facts = {};
    ::stat(QFile::encodeName(path).constData(), &facts);
    return facts.st_mode & permissions;
}

class FileSecretsTest : public ::testing::Test
{
protected:
    FileSecrets open() { return FileSecrets(sandbox.path(file), writer); }
    void save(FileSecrets& secrets, const QString& key, const QString& secret)
    {
        QCoro::waitFor(secrets.save(key, secret));
        writer.flush();
    }
    static QString load(FileSecrets& secrets, const QString& key) { return QCoro::waitFor(secrets.load(key)); }

    fixtures::Sandbox sandbox;
    FileWriter writer;
};

TEST_F(FileSecretsTest, GivesBackWhatWasSavedBefore)
{
    FileSecrets first = open();
    save(first, u"key"_s, u"old"_s);
    save(first, u"key"_s, u"pa\"ss\\wörd\n"_s);
    save(first, u"gone"_s, u"secret"_s);
    save(first, u"empty"_s, {});
    QCoro::waitFor(first.remove(u"gone"_s));
    writer.flush();
    FileSecrets second = open();
    EXPECT_EQ(load(second, u"key"_s), u"pa\"ss\\wörd\n");
    EXPECT_EQ(load(second, u"gone"_s), u"");
    EXPECT_EQ(second.keys(), (QStringList{u"empty"_s, u"key"_s}));
    EXPECT_EQ(second.place(), SecretStore::Place::ownFile);
}

TEST_F(FileSecretsTest, IsForItsOwnerOnly)
{
    const mode_t before = ::umask(0);
    FileSecrets secrets = open();
    save(secrets, u"key"_s, u"secret"_s);
    ::umask(before);
    EXPECT_EQ(modeOf(sandbox.path(file)), 0600U);
    EXPECT_EQ(modeOf(sandbox.path(u"config/secrets"_s)), 0700U);
}

TEST_F(FileSecretsTest, ClosesToOthersWhatWasOpen)
{
    ::chmod(QFile::encodeName(sandbox.write(file, "{}")).constData(), 0644);
    ::chmod(QFile::encodeName(sandbox.path(u"config/secrets"_s)).constData(), 0755);
    FileSecrets secrets = open();
    EXPECT_EQ(modeOf(sandbox.path(file)), 0600U);
    save(secrets, u"key"_s, u"secret"_s);
    EXPECT_EQ(modeOf(sandbox.path(u"config/secrets"_s)), 0700U);
}

TEST_F(FileSecretsTest, MakesNoFolderUntilThereIsAPassword)
{
    FileSecrets secrets = open();
    EXPECT_EQ(load(secrets, u"key"_s), u"");
    QCoro::waitFor(secrets.remove(u"key"_s));
    writer.flush();
    EXPECT_FALSE(sandbox.exists(u"config"_s));
}

TEST_F(FileSecretsTest, TakesADamagedFileForEmptyAndKeepsItBeside)
{
    for (const char* const damaged : {"", "{\"key\":\"sec", "[\"secret\"]"}) {
        sandbox.write(file, damaged);
        FileSecrets secrets = open();
        EXPECT_EQ(load(secrets, u"key"_s), u"");
        EXPECT_EQ(sandbox.read(file), damaged) << "it is not touched before there is something to write";
        save(secrets, u"key"_s, u"new"_s);
        EXPECT_EQ(sandbox.read(file), R"({"key":"new"})");
        const QString kept = file + u".unreadable"_s;
        EXPECT_EQ(sandbox.read(kept), damaged);
        EXPECT_EQ(modeOf(sandbox.path(kept)), 0600U);
        QFile::remove(sandbox.path(kept));
    }
}

TEST_F(FileSecretsTest, LeavesAloneWhatItDoesNotKnow)
{
    sandbox.write(file, R"({"later":{"a":1}})");
    FileSecrets secrets = open();
    EXPECT_THAT(secrets.keys(), testing::IsEmpty());
    save(secrets, u"key"_s, u"new"_s);
    EXPECT_EQ(sandbox.read(file), R"({"key":"new","later":{"a":1}})");
}

TEST_F(FileSecretsTest, RemembersWhereNothingCanBeWritten)
{
    sandbox.write(u"config"_s, "a file in the way");
    FileSecrets secrets = open();
    save(secrets, u"key"_s, u"secret"_s);
    EXPECT_EQ(load(secrets, u"key"_s), u"secret");
    EXPECT_EQ(sandbox.files(), QStringList{u"config"_s});
}

} // namespace
} // namespace vormel

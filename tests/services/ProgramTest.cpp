#include "app/Program.h"

#include "PremiumServices.h"
#include "fixtures/EventLoop.h"
#include "fixtures/FakeResolvers.h"

#include <QCoroTask>
#include <QFileInfo>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// The program as it is put together for a user without a keyring.
class ProgramOnServices : public ::testing::Test
{
protected:
    ProgramOnServices()
    {
        manager().settings().autoExtract.set(false);
        manager().settings().autoStartDownloads.set(true);
        QCoro::waitFor(manager().accounts().put(ann, services.password));
    }

    [[nodiscard]] DownloadManager& manager() { return program->manager(); }
    void fetchAnother()
    {
        manager().addURLs({services.newFile()}, std::nullopt);
        const ItemPtr item = manager().items().back();
        EXPECT_TRUE(waitUntil([&item] { return item->status() == DownloadStatus::completed; }))
            << item->status().message().toStdString();
    }

    const QString secretsFile = u"secrets/passwords.json"_s;
    PremiumServices services;
    Sandbox sandbox;
    HostAccount ann = account(SupportedHost::filestore, services.username);
    std::unique_ptr<Program> program = std::make_unique<Program>(sandbox.folders(), services.network());
};

} // namespace

TEST_F(ProgramOnServices, KeepsPasswordsInAFileThatIsTheUsersAlone)
{
    EXPECT_EQ(manager().accounts().passwordPlace(), SecretStore::Place::ownFile);
    fetchAnother();
    program.reset();
    QStringList withPassword;
    for (const QString& file : sandbox.files()) {
        if (sandbox.read(file).contains(services.password.toUtf8()))
            withPassword << file;
    }
    ASSERT_EQ(withPassword.size(), 1);
    const QFileInfo file(sandbox.path(withPassword.front()));
    EXPECT_TRUE(file.filePath().endsWith(secretsFile)) << file.filePath().toStdString();
    const QFile::Permissions others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    EXPECT_EQ(file.permissions() & others, QFile::Permissions());
    EXPECT_EQ(QFileInfo(file.path()).permissions() & others, QFile::Permissions());
}

TEST_F(ProgramOnServices, KnowsPasswordsAfterANewStart)
{
    program.reset();
    program = std::make_unique<Program>(sandbox.folders(), services.network());
    fetchAnother();
    EXPECT_EQ(services.site.logins(), 1);
}

TEST_F(ProgramOnServices, LogsInAnewAfterItsPasswordWasChanged)
{
    fetchAnother();
    fetchAnother();
    EXPECT_EQ(services.site.logins(), 1);
    QCoro::waitFor(manager().accounts().put(ann, services.password));
    fetchAnother();
    EXPECT_EQ(services.site.logins(), 2);
}

TEST_F(ProgramOnServices, AsksTheServiceForTheAccountsPlan)
{
    const PremiumAccountInfo info = QCoro::waitFor(manager().checkAccount(ann, {}));
    EXPECT_EQ(info.plan, u"Premium"_s);
}

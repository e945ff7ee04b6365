#include "ProgramOnWeb.h"

#include "fixtures/FakeResolvers.h"
#include "ui/web/PageFrame.h"

#include <QAbstractButton>
#include <QCoroTask>
#include <QFile>

using namespace Qt::StringLiterals;

namespace vormel::fixtures {

ProgramOnWeb::ProgramOnWeb()
{
    start();
    manager().settings().autoExtract.set(false);
    manager().settings().autoStartDownloads.set(true);
}

ProgramOnWeb::~ProgramOnWeb()
{
    quit();
}

void ProgramOnWeb::start()
{
    m_program = std::make_unique<Program>(sandbox.folders(), services.network(), Program::Contacts(),
                                          QStringLiteral(VORMEL_WEB_PLUGIN));
    m_window = std::make_unique<MainWindow>(m_program->viewPorts(), m_program->updater());
    m_window->resize(1100, 760);
    m_window->show();
}

void ProgramOnWeb::quit()
{
    m_program->manager().shutDown();
    m_window.reset();
    m_program.reset();
}

ItemPtr ProgramOnWeb::add(const Link& url)
{
    manager().addURLs({url}, std::nullopt);
    return manager().items().back();
}

void ProgramOnWeb::addTerabytezAccount()
{
    QCoro::waitFor(manager().accounts().put(account(SupportedHost::terabytez, QString::fromUtf8(WebServices::username)),
                                            QString::fromUtf8(WebServices::password)));
}

void ProgramOnWeb::press(const QString& button)
{
    const bool canBePressed = waitUntil([&] {
        const auto* const found = inSight<QAbstractButton>(button);
        return found && found->isEnabled();
    });
    ASSERT_TRUE(canBePressed) << button.toStdString();
    inSight<QAbstractButton>(button)->click();
}

bool ProgramOnWeb::waitUntilGone(const QString& name)
{
    return waitUntil([&] { return inSight<QWidget>(name) == nullptr; });
}

QVariant ProgramOnWeb::inPage(const QString& script)
{
    const auto* const frame = inSight<PageFrame>(u"pageFrame"_s);
    return frame && frame->page() ? QCoro::waitFor(frame->page()->run(script)) : QVariant();
}

bool ProgramOnWeb::waitInPage(const QString& condition)
{
    return waitUntil([&] { return inPage(condition).toBool(); });
}

void ProgramOnWeb::signIn()
{
    ASSERT_TRUE(waitInPage(u"!!document.querySelector('input[name=password]')"_s));
    ASSERT_TRUE(waitInPage(u"document.querySelector('input[name=password]').value != ''"_s)) << "it is not filled in";
    static_cast<void>(inPage(u"document.querySelector('#submit-login').click()"_s));
    ASSERT_TRUE(waitInPage(u"document.documentElement.innerHTML.includes('logout')"_s));
    press(u"signInDone"_s);
    ASSERT_TRUE(waitUntilGone(u"terabytezLoginSheet"_s));
}

bool ProgramOnWeb::waitForStatus(const ItemPtr& item, DownloadStatus::Kind kind)
{
    return waitUntil([&] { return item->status() == kind; }, std::chrono::seconds(30));
}

void ProgramOnWeb::expectWhole(const ItemPtr& item, int number, qint64 size)
{
    ASSERT_TRUE(waitForStatus(item, DownloadStatus::completed)) << item->status().message().toStdString();
    QFile file(item->localPath().value());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_EQ(bytes.size(), size);
    EXPECT_FALSE(WebServices::contentOf(number, size)
                     .firstMismatch(0, std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
}

} // namespace vormel::fixtures

#include "platform/desktop/SingleInstance.h"

#include "fixtures/EventLoop.h"
#include "fixtures/Sandbox.h"
#include "platform/desktop/InstanceMessage.h"

#include <QFile>
#include <QStringList>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>

using namespace Qt::StringLiterals;

using namespace vormel;
using namespace vormel::fixtures;

namespace {

/// Two starts of the program, of which the first writes down what it is asked.
struct TwoStarts
{
    TwoStarts()
    {
        QObject::connect(&first, &SingleInstance::showRequested, &first,
                         [this](const QString& text) { asked << text; });
    }
    [[nodiscard]] QString askedText(qsizetype count = 1)
    {
        EXPECT_TRUE(waitUntil([this, count] { return asked.size() >= count; }));
        return asked.join(u'|');
    }

    Sandbox sandbox;
    SingleInstance first{sandbox.path(u"run"_s)};
    SingleInstance second{sandbox.path(u"run"_s)};
    QStringList asked;
};

/// Sends what no start of the program would send, with a descriptor beside it.
void sendRaw(const QString& socketPath, const QByteArray& bytes, int descriptor = -1)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(socketPath).constData(), sizeof(address.sun_path));
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    QByteArray sent = bytes;
    iovec content = {sent.data(), static_cast<std::size_t>(sent.size())};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> room{};
    msghdr message = {};
    message.msg_name = &address;
    message.msg_namelen = sizeof(address);
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    if (descriptor >= 0) {
        message.msg_control = room.data();
        message.msg_controllen = room.size();
        cmsghdr* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(header), &descriptor, sizeof(descriptor));
    }
    ASSERT_GE(::sendmsg(socket.get(), &message, 0), 0);
}

} // namespace

TEST(SingleInstance, LetsTheSecondAskTheFirstToShow)
{
    TwoStarts starts;
    EXPECT_TRUE(starts.first.isFirst());
    EXPECT_FALSE(starts.second.isFirst());
    EXPECT_TRUE(starts.second.askFirstToShow());
    EXPECT_EQ(starts.askedText(), u"");
    EXPECT_EQ(starts.asked.size(), 1);
}

TEST(SingleInstance, HandsATextOfAnyUsualLengthOver)
{
    TwoStarts starts;
    const QString large = u"https://a.example/ü\n"_s.repeated(50000); // more than a datagram may hold
    EXPECT_TRUE(starts.second.askFirstToShow(u"https://a.example/1"_s));
    EXPECT_TRUE(starts.second.askFirstToShow(large));
    EXPECT_EQ(starts.askedText(2), u"https://a.example/1|"_s + large);
}

TEST(SingleInstance, SendsNoTextThatIsTooLong)
{
    const TwoStarts starts;
    EXPECT_TRUE(starts.second.askFirstToShow(QString(InstanceMessage::maxTextBytes, u'x')));
    EXPECT_FALSE(starts.second.askFirstToShow(QString(InstanceMessage::maxTextBytes + 1, u'x')));
}

TEST(SingleInstance, TakesNoTextFromWhatIsNotSealed)
{
    TwoStarts starts;
    const QString socket = starts.sandbox.path(u"run/vormel.socket"_s);
    const QString file = starts.sandbox.write(u"links.txt"_s, "https://a.example/1");
    const FileDescriptor plain(::open(QFile::encodeName(file).constData(), O_RDONLY | O_CLOEXEC));
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0); // nothing ever comes out of it
    const FileDescriptor end(pipe[0]);
    const FileDescriptor other(pipe[1]);
    const FileDescriptor open(::memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    ASSERT_EQ(::write(open.get(), "x", 1), 1);
    for (const int descriptor : {plain.get(), end.get(), open.get()})
        sendRaw(socket, "!", descriptor);
    sendRaw(socket, QByteArray(2000, 'x'));
    sendRaw(socket, "");
    EXPECT_TRUE(starts.second.askFirstToShow(u"last"_s));
    EXPECT_EQ(starts.askedText(6), u"|||||last");
}

TEST(SingleInstance, TakesNoSealedTextThatIsTooLong)
{
    TwoStarts starts;
    const FileDescriptor huge(::memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    ASSERT_EQ(::ftruncate(huge.get(), InstanceMessage::maxTextBytes + 1), 0);
    ASSERT_EQ(::fcntl(huge.get(), F_ADD_SEALS, F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE), 0);
    sendRaw(starts.sandbox.path(u"run/vormel.socket"_s), "!", huge.get());
    EXPECT_EQ(starts.askedText(), u"");
}

TEST(SingleInstance, StopsListeningBeforeItsEndAndKeepsTheLock)
{
    TwoStarts starts;
    starts.first.stopListening();
    EXPECT_FALSE(starts.second.askFirstToShow(u"https://a.example/1"_s));
    EXPECT_FALSE(starts.second.tryToBecomeFirst());
    turnEventLoop();
    EXPECT_EQ(starts.asked, QStringList());
}

TEST(SingleInstance, TheEndOfOneThatStoppedListeningLeavesTheNextItsSocket)
{
    const Sandbox sandbox;
    auto first = std::make_unique<SingleInstance>(sandbox.root());
    first->stopListening();
    sandbox.write(u"vormel.socket"_s, "of another one");
    first.reset();
    EXPECT_TRUE(sandbox.exists(u"vormel.socket"_s));
}

TEST(SingleInstance, TakesTheLockWhenItIsFree)
{
    const Sandbox sandbox;
    auto first = std::make_unique<SingleInstance>(sandbox.root());
    SingleInstance second(sandbox.root());
    EXPECT_FALSE(second.tryToBecomeFirst());
    first.reset();
    EXPECT_TRUE(second.tryToBecomeFirst());
    EXPECT_TRUE(second.isFirst());
    const SingleInstance third(sandbox.root());
    EXPECT_TRUE(third.askFirstToShow());
}

TEST(SingleInstance, GivesTheLockFreeWithItsEnd)
{
    const Sandbox sandbox;
    {
        const SingleInstance first(sandbox.root());
        EXPECT_TRUE(first.isFirst());
    }
    const SingleInstance next(sandbox.root());
    EXPECT_TRUE(next.isFirst());
}

TEST(SingleInstance, StartsWithoutAUsableFolder)
{
    const SingleInstance instance(u"/proc/nowhere"_s);
    EXPECT_TRUE(instance.isFirst());
    EXPECT_FALSE(instance.askFirstToShow());
}

TEST(SingleInstance, LivesWithAFolderTooDeepForASocket)
{
    const Sandbox sandbox;
    const QString deep = sandbox.path(QString(120, u'd'));
    const SingleInstance first(deep);
    EXPECT_TRUE(first.isFirst());
    const SingleInstance second(deep);
    EXPECT_FALSE(second.isFirst());
    EXPECT_FALSE(second.askFirstToShow());
}

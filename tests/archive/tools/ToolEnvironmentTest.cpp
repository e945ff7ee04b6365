#include "archive/tools/ToolEnvironment.h"

#include "archive/TaskEnd.h"
#include "archive/tools/ToolArguments.h"
#include "archive/tools/ToolRunner.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace vormel {
namespace {

TEST(ToolEnvironment, IsMadeOfWhatToolsNeedAndNothingElse)
{
    QProcessEnvironment ours;
    for (const QString& name :
         {QStringLiteral("PATH"), QStringLiteral("HOME"), QStringLiteral("TMPDIR"), QStringLiteral("TZ"),
          QStringLiteral("LANG"), QStringLiteral("LC_ALL"), QStringLiteral("LD_PRELOAD"), QStringLiteral("TAR_OPTIONS"),
          QStringLiteral("UNZIP"), QStringLiteral("RAR"), QStringLiteral("ANYTHING")})
        ours.insert(name, QStringLiteral("ours"));
    const QProcessEnvironment theirs = toolEnvironment(ours);
    QStringList all = theirs.toStringList();
    all.sort();
    EXPECT_EQ(all, (QStringList{QStringLiteral("HOME=/nonexistent"), QStringLiteral("LC_ALL=C.UTF-8"),
                                QStringLiteral("PATH=ours"), QStringLiteral("RAR=-c-"), QStringLiteral("TMPDIR=ours"),
                                QStringLiteral("TZ=ours")}));
}

TEST(ToolEnvironment, HasAPathAlsoWhereThereIsNone)
{
    EXPECT_TRUE(toolEnvironment({}).value(QStringLiteral("PATH")).contains(QStringLiteral("/usr/bin")));
    EXPECT_FALSE(toolEnvironment({}).contains(QStringLiteral("TZ")));
}

/// A variable that is set for one test, or a file in the user's home.
struct Meddling
{
    const char* variable;
    const char* value;
};

void PrintTo(const Meddling& meddling, std::ostream* out)
{
    *out << meddling.variable << '=' << meddling.value;
}

class MeddledEnvironment : public ::testing::TestWithParam<Meddling>
{
protected:
    void SetUp() override
    {
        VORMEL_NEEDS_TOOL("unrar");
        VORMEL_NEEDS_TOOL("rar");
        VORMEL_NEEDS_TOOL("7zz");
        VORMEL_NEEDS_TOOL("unzip");
        VORMEL_NEEDS_TOOL("zip");
        VORMEL_NEEDS_TOOL("tar");
        m_home = qgetenv("HOME");
        m_before = qgetenv(GetParam().variable);
        const QByteArray home = sandbox.path(QStringLiteral("home")).toUtf8();
        sandbox.write(QStringLiteral("home/.rarrc"), "switches=-inul -ep -x*.txt\n");
        qputenv("HOME", home);
        qputenv(GetParam().variable, GetParam().value);
        sandbox.write(QStringLiteral("in/sub/Ünï.txt"), "text");
    }
    void TearDown() override
    {
        const auto restore = [](const char* name, const QByteArray& value) {
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        };
        restore(GetParam().variable, m_before);
        restore("HOME", m_home);
    }

    void expectUnpacked(const QString& tool, const QString& archive, const QStringList& args)
    {
        ToolRunner runner;
        const TaskEnd end = runToEnd(runner.run(QStringLiteral("/usr/bin/") + tool, args, {}));
        EXPECT_TRUE(end.isSuccess()) << tool.toStdString() << end.output.toStdString();
        EXPECT_EQ(sandbox.files(QStringLiteral("out")), QStringList{QStringLiteral("sub/Ünï.txt")})
            << tool.toStdString() << ' ' << archive.toStdString();
        QDir(out()).removeRecursively();
    }
    [[nodiscard]] QString out() const { return sandbox.path(QStringLiteral("out")); }

    fixtures::Sandbox sandbox;

private:
    QByteArray m_home;
    QByteArray m_before;
};

TEST_P(MeddledEnvironment, ChangesNothingInWhatToolsDo)
{
    const auto pack = [this](const QString& name, const QString& tool, QStringList args) {
        const QString path = sandbox.path(name);
        args.replaceInStrings(QStringLiteral("%1"), path);
        // env -i: the packers are not to be meddled with.
        const QStringList clean =
            QStringList{QStringLiteral("-i"), QStringLiteral("PATH=/usr/bin:/bin"), QStringLiteral("LC_ALL=C.UTF-8"),
                        QStringLiteral("HOME=/nonexistent"), tool} +
            args;
        const fixtures::ToolResult packed =
            fixtures::runRealTool(QStringLiteral("/usr/bin/env"), clean, sandbox.path(QStringLiteral("in")));
        EXPECT_EQ(packed.status, 0) << packed.output.constData();
        return path;
    };
    const QString l = QStringLiteral("%1");
    const QString dot = QStringLiteral(".");
    const QString rar = pack(QStringLiteral("a.rar"), QStringLiteral("rar"),
                             {QStringLiteral("a"), QStringLiteral("-idq"), QStringLiteral("-r"), l, dot});
    const QString zip = pack(QStringLiteral("a.zip"), QStringLiteral("zip"), {QStringLiteral("-qr"), l, dot});
    const QString seven = pack(QStringLiteral("a.7z"), QStringLiteral("7zz"), {QStringLiteral("a"), l, dot});
    QDir().mkpath(out());
    expectUnpacked(QStringLiteral("unrar"), rar, rarArguments(rar, out(), {}));
    expectUnpacked(QStringLiteral("rar"), rar, rarArguments(rar, out(), {}));
    expectUnpacked(QStringLiteral("unzip"), zip, unzipArguments(zip, out(), {}));
    expectUnpacked(QStringLiteral("7zz"), seven, sevenZipArguments(seven, out(), {}));
    for (const char* letter : {"", "z", "j", "J"}) {
        const QString how = QString::fromUtf8(letter);
        const QString tar = pack(QStringLiteral("a.tar") + how, QStringLiteral("tar"),
                                 {QStringLiteral("-c%1f").arg(how), l, QStringLiteral("sub")});
        QDir().mkpath(out());
        expectUnpacked(QStringLiteral("tar"), tar, tarArguments(QStringLiteral("-x%1f").arg(how), tar, out()));
    }
}

INSTANTIATE_TEST_SUITE_P(
    ToolEnvironment, MeddledEnvironment,
    ::testing::Values(Meddling{"NOTHING", "1"}, Meddling{"TAR_OPTIONS", "--exclude=*.txt"},
                      Meddling{"TAR_OPTIONS", "--no-such-option"}, Meddling{"UNZIP", "-x *.txt"},
                      Meddling{"UNZIP", "-j"}, Meddling{"UNZIPOPT", "-j"}, Meddling{"ZIPINFO", "-1"},
                      Meddling{"RARINISWITCHES", "-x*.txt"}, Meddling{"RAR", "-x*.txt"}, Meddling{"UNRAR", "-x*.txt"},
                      Meddling{"GZIP", "--no-such-option"}, Meddling{"BZIP", "--no-such-option"},
                      Meddling{"BZIP2", "--no-such-option"}, Meddling{"XZ_OPT", "--no-such-option"},
                      Meddling{"XZ_DEFAULTS", "--no-such-option"}, Meddling{"POSIXLY_CORRECT", "1"},
                      Meddling{"LC_ALL", "C"}, Meddling{"LC_ALL", "POSIX"}, Meddling{"LC_ALL", "no_such.LOCALE"}));

} // namespace
} // namespace vormel

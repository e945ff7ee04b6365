#include "archive/tools/ToolEnvironment.h"

#include "archive/TaskEnd.h"
#include "archive/tools/ToolArguments.h"
#include "archive/tools/ToolRunner.h"
#include "fixtures/RealTools.h"
#include "fixtures/Sandbox.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

TEST(ToolEnvironment, IsMadeOfWhatToolsNeedAndNothingElse)
{
    QProcessEnvironment ours;
    for (const QString& name : {u"PATH"_s, u"HOME"_s, u"TMPDIR"_s, u"TZ"_s, u"LANG"_s, u"LC_ALL"_s, u"LD_PRELOAD"_s,
                                u"TAR_OPTIONS"_s, u"UNZIP"_s, u"RAR"_s, u"ANYTHING"_s})
        ours.insert(name, u"ours"_s);
    const QProcessEnvironment theirs = toolEnvironment(ours);
    QStringList all = theirs.toStringList();
    all.sort();
    EXPECT_EQ(all, (QStringList{u"HOME=/nonexistent"_s, u"LC_ALL=C.UTF-8"_s, u"PATH=ours"_s, u"RAR=-c-"_s,
                                u"TMPDIR=ours"_s, u"TZ=ours"_s}));
}

TEST(ToolEnvironment, HasAPathAlsoWhereThereIsNone)
{
    EXPECT_TRUE(toolEnvironment({}).value(u"PATH"_s).contains(u"/usr/bin"_s));
    EXPECT_FALSE(toolEnvironment({}).contains(u"TZ"_s));
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
        const QByteArray home = sandbox.path(u"home"_s).toUtf8();
        sandbox.write(u"home/.rarrc"_s, "switches=-inul -ep -x*.txt\n");
        qputenv("HOME", home);
        qputenv(GetParam().variable, GetParam().value);
        sandbox.write(u"in/sub/Ünï.txt"_s, "text");
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
        const TaskEnd end = runToEnd(runner.run(u"/usr/bin/"_s + tool, args, {}));
        EXPECT_TRUE(end.isSuccess()) << tool.toStdString() << end.output.toStdString();
        EXPECT_EQ(sandbox.files(u"out"_s), QStringList{u"sub/Ünï.txt"_s})
            << tool.toStdString() << ' ' << archive.toStdString();
        QDir(out()).removeRecursively();
    }
    [[nodiscard]] QString out() const { return sandbox.path(u"out"_s); }

    fixtures::Sandbox sandbox;

private:
    QByteArray m_home;
    QByteArray m_before;
};

TEST_P(MeddledEnvironment, ChangesNothingInWhatToolsDo)
{
    const auto pack = [this](const QString& name, const QString& tool, QStringList args) {
        const QString path = sandbox.path(name);
        args.replaceInStrings(u"%1"_s, path);
        // env -i: the packers are not to be meddled with.
        const QStringList clean =
            QStringList{u"-i"_s, u"PATH=/usr/bin:/bin"_s, u"LC_ALL=C.UTF-8"_s, u"HOME=/nonexistent"_s, tool} + args;
        const fixtures::ToolResult packed = fixtures::runRealTool(u"/usr/bin/env"_s, clean, sandbox.path(u"in"_s));
        EXPECT_EQ(packed.status, 0) << packed.output.constData();
        return path;
    };
    const QString l = u"%1"_s;
    const QString dot = u"."_s;
    const QString rar = pack(u"a.rar"_s, u"rar"_s, {u"a"_s, u"-idq"_s, u"-r"_s, l, dot});
    const QString zip = pack(u"a.zip"_s, u"zip"_s, {u"-qr"_s, l, dot});
    const QString seven = pack(u"a.7z"_s, u"7zz"_s, {u"a"_s, l, dot});
    QDir().mkpath(out());
    expectUnpacked(u"unrar"_s, rar, rarArguments(rar, out(), {}));
    expectUnpacked(u"rar"_s, rar, rarArguments(rar, out(), {}));
    expectUnpacked(u"unzip"_s, zip, unzipArguments(zip, out(), {}));
    expectUnpacked(u"7zz"_s, seven, sevenZipArguments(seven, out(), {}));
    for (const char* letter : {"", "z", "j", "J"}) {
        const QString how = QString::fromUtf8(letter);
        const QString tar = pack(u"a.tar"_s + how, u"tar"_s, {u"-c%1f"_s.arg(how), l, u"sub"_s});
        QDir().mkpath(out());
        expectUnpacked(u"tar"_s, tar, tarArguments(u"-x%1f"_s.arg(how), tar, out()));
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

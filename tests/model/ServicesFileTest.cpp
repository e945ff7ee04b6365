#include "model/ServicesFile.h"

#include "fixtures/Sandbox.h"

#include <QFile>
#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using Reason = ServicesProblem::Reason;

/// Everything that a file may tell, each different from what is built in.
const QByteArray wholeFile = R"({
  "filestoreDomain": "boxes.test",
  "filestoreKey": "key.test",
  "filestoreDisplayName": "Böxes",
  "terabytezDomain": "terra.test",
  "terabytezHostKey": "dl.terabytez.test",
  "terabytezDisplayName": "Terra",
  "otherFileHostDomains": ["h0.test", "h1.test", "h2.test", "h3.test", "h4.test", "h5.test", "h6.test", "h7.test", "h8.test",
                           "h9.test"],
  "fileCryptDomains": ["fc1.test", "fc2.test"],
  "lfileCryptDomains": ["lf1.test", "lf2.test", "lf3.test", "lf4.test"],
  "keeplinksDomains": ["kl1.test", "kl2.test"],
  "keeplinksRootUrl": "https://www.kl2.test/"
})";

ServicesReading read(const QByteArray& bytes)
{
    return readServices(bytes, Services::builtIn());
}

TEST(ServicesFile, PutsEverythingThatItTellsInThePlaceOfTheBuiltIn)
{
    const ServicesReading reading = read(wholeFile);
    EXPECT_EQ(reading.problem, std::nullopt);
    EXPECT_EQ(reading.services,
              (Services{.filestoreDomain = u"boxes.test"_s,
                        .filestoreKey = u"key.test"_s,
                        .filestoreDisplayName = u"Böxes"_s,
                        .terabytezDomain = u"terra.test"_s,
                        .terabytezHostKey = u"dl.terabytez.test"_s,
                        .terabytezDisplayName = u"Terra"_s,
                        .otherFileHostDomains = {u"h0.test"_s, u"h1.test"_s, u"h2.test"_s, u"h3.test"_s, u"h4.test"_s,
                                                 u"h5.test"_s, u"h6.test"_s, u"h7.test"_s, u"h8.test"_s, u"h9.test"_s},
                        .fileCryptDomains = {u"fc1.test"_s, u"fc2.test"_s},
                        .lfileCryptDomains = {u"lf1.test"_s, u"lf2.test"_s, u"lf3.test"_s, u"lf4.test"_s},
                        .keeplinksDomains = {u"kl1.test"_s, u"kl2.test"_s},
                        .keeplinksRootUrl = u"https://www.kl2.test/"_s}));
}

TEST(ServicesFile, LeavesWhatItDoesNotTellAsItIsBuiltIn)
{
    Services expected = Services::builtIn();
    EXPECT_EQ(read("{}").services, expected);
    EXPECT_EQ(read("{}").problem, std::nullopt);
    expected.filestoreDomain = u"boxes.test"_s;
    EXPECT_EQ(read(R"({"filestoreDomain": "boxes.test"})").services, expected);
    EXPECT_EQ(expected.filestoreKey, u"filestore.example");
}

TEST(ServicesFile, TakesTheDomainsOfTwoServicesThatChangePlaces)
{
    const ServicesReading reading = read(R"({"otherFileHostDomains": ["filestore.example", "b.test", "c.test", "d.test",
        "e.test", "f.test", "g.test", "h.test", "i.test", "j.test"], "filestoreDomain": "rapidgator.net"})");
    EXPECT_EQ(reading.problem, std::nullopt);
    EXPECT_EQ(reading.services.filestoreDomain, u"rapidgator.net");
}

/// A file that is not taken, and what is said of it.
struct BadFile
{
    const char* name;
    QByteArray bytes;
    Reason reason;
    int line;
    const char* key;
    const char* detail = "";
};

class BadServicesFile : public ::testing::TestWithParam<BadFile>
{};

TEST_P(BadServicesFile, IsToldByLineAndKeyAndChangesNothing)
{
    const BadFile& bad = GetParam();
    const ServicesReading reading = read(bad.bytes);
    EXPECT_EQ(reading.services, Services::builtIn());
    ASSERT_TRUE(reading.problem);
    EXPECT_EQ(static_cast<int>(reading.problem->reason), static_cast<int>(bad.reason));
    EXPECT_EQ(reading.problem->line, bad.line);
    EXPECT_EQ(reading.problem->key.toStdString(), bad.key);
    EXPECT_EQ(reading.problem->detail.toStdString(), bad.detail);
}

std::string nameOf(const ::testing::TestParamInfo<BadFile>& info)
{
    return info.param.name;
}

const BadFile badTexts[] = {
    {"Empty", "", Reason::notJson, 1, ""},
    {"Cut", "{\n\"filestoreDomain\": \"boxes.te", Reason::notJson, 2, ""},
    {"CutBehindAValue", "{\n\"filestoreDomain\": \"boxes.test\"\n\n", Reason::notJson, 2, ""},
    {"MissingComma", "{\"filestoreKey\": \"a.test\"\n\"terabytezDomain\": \"b.test\"}", Reason::notJson, 2, ""},
    {"Comment", "{\n// my own\n}", Reason::notJson, 2, ""},
    {"MoreBehindTheEnd", "{}\n{}", Reason::notJson, 2, ""},
    {"NotUtf8", "{\n\n\"filestoreDisplayName\": \"B\xF6xes\"}", Reason::notJson, 3, ""},
    {"HalfACharacter", R"({"filestoreDisplayName": "\uD800"})", Reason::notJson, 1, ""},
    {"NulBehindTheEnd", QByteArray("{}\n\0 more", 9), Reason::notJson, 2, ""},
    {"NulInAText", QByteArray("{\"filestoreDisplayName\": \"a\0b\"}", 31), Reason::notJson, 1, ""},
    {"List", "\n[]", Reason::notObject, 2, ""},
    {"Text", "\"filestoreDomain\"", Reason::notObject, 1, ""},
    {"Number", "12", Reason::notObject, 1, ""},
    {"Null", "null", Reason::notObject, 1, ""},
    {"DeepLists", QByteArray(30000, '['), Reason::notObject, 1, ""},
    {"DeepListsInAKey", "{\n\"fileCryptDomains\": " + QByteArray(30000, '['), Reason::wrongType, 2, "fileCryptDomains"},
    {"DeepObjects", QByteArray("{\"a\":").repeated(10000), Reason::wrongType, 1, "a"},
    {"TooLarge", "{" + QByteArray(65536, ' ') + "}", Reason::tooLarge, 0, ""},
    {"UnknownKey", "{\n\"filestoredomain\": \"boxes.test\"}", Reason::unknownKey, 2, "filestoredomain"},
    {"RepeatedKey", "{\"filestoreDomain\": \"a.test\",\n\"filestoreDomain\": \"a.test\"}", Reason::repeatedKey, 2,
     "filestoreDomain"},
    {"NumberForAText", "{\n\"filestoreDomain\": 7\n}", Reason::wrongType, 2, "filestoreDomain"},
    {"LargeNumber", "{\"filestoreDomain\": 1e300}", Reason::wrongType, 1, "filestoreDomain"},
    {"NumberThatIsNone", "{\"filestoreDomain\": 1e99999}", Reason::notJson, 1, ""},
    {"NullForAText", "{\"filestoreDomain\": null}", Reason::wrongType, 1, "filestoreDomain"},
    {"ListForAText", "{\"filestoreDomain\": [\"boxes.test\"]}", Reason::wrongType, 1, "filestoreDomain"},
    {"TextForAList", "{\"fileCryptDomains\": \"a.test\"}", Reason::wrongType, 1, "fileCryptDomains"},
    {"ObjectForAText", "{\"filestoreDomain\":\n{}}", Reason::wrongType, 2, "filestoreDomain"},
    {"NumberInAList", "{\"fileCryptDomains\": [\"a.test\",\n7]}", Reason::wrongType, 2, "fileCryptDomains"},
    {"ListInAList", "{\"fileCryptDomains\": [\"a.test\",\n[]]}", Reason::wrongType, 2, "fileCryptDomains"},
    {"TooFew", "{\n\"fileCryptDomains\": [\"a.test\"]}", Reason::wrongCount, 2, "fileCryptDomains", "2"},
    {"None", "{\n\"keeplinksDomains\": []}", Reason::wrongCount, 2, "keeplinksDomains", "2"},
    {"TooMany", R"({"lfileCryptDomains": ["a.test", "b.test", "c.test", "d.test", "e.test"]})", Reason::wrongCount, 1,
     "lfileCryptDomains", "4"},
    {"NineOthers", R"({"otherFileHostDomains": ["a.test", "b.test", "c.test", "d.test", "e.test", "f.test", "g.test",
        "h.test", "i.test"]})",
     Reason::wrongCount, 1, "otherFileHostDomains", "10"},
    {"WindowsLines", "{\r\n\r\n\"terabytezDomain\": \"x\"\r\n}", Reason::noDomain, 3, "terabytezDomain"},
};

INSTANTIATE_TEST_SUITE_P(Texts, BadServicesFile, ::testing::ValuesIn(badTexts), nameOf);

const BadFile badNeighbours[] = {
    {"NoTerabytezInItsKey", "{\n\"terabytezHostKey\": \"terabytez-host.test\"}", Reason::noTerabytezWord, 2,
     "terabytezHostKey"},
    {"ContainerInAnother",
     "{\"keeplinksRootUrl\": \"https://kl.test/\",\n\"fileCryptDomains\": [\"fc.test\",\n\"k.test\"],"
     "\n\"keeplinksDomains\": [\"kl.test\",\n\"xk.test\"]}",
     Reason::clash, 5, "keeplinksDomains", "k.test"},
    {"TheEarlierMayBeTheLarger",
     "{\"lfileCryptDomains\": [\"a.test\", \"b.test\", \"g.test\", \"xfc.test\"],\n"
     "\"fileCryptDomains\": [\"fc.test\", \"d.example\"]}",
     Reason::clash, 2, "fileCryptDomains", "xfc.test"},
    {"ContainerInItsTwin", "{\"fileCryptDomains\": [\"fc.test\",\n\"my-fc.test\"]}", Reason::clash, 2,
     "fileCryptDomains", "fc.test"},
    {"ContainerTwice", "{\"fileCryptDomains\": [\"fc.test\",\n\"fc.test\"]}", Reason::repeatedValue, 2,
     "fileCryptDomains", "fc.test"},
    {"ContainerInABuiltInOne", "{\n\"fileCryptDomains\": [\"file.example\", \"fc.test\"]}", Reason::clash, 2,
     "fileCryptDomains", "lfile.example"},
    {"FileHostInAContainer", "{\n\"filestoreDomain\": \"file.example\"}", Reason::clash, 2, "filestoreDomain",
     "lfile.example"},
    {"ContainerInAFileHost", "{\n\"terabytezDomain\": \"my-filecrypt.example\"}", Reason::clash, 2, "terabytezDomain",
     "filecrypt.example"},
    {"ContainerNamedTerabytez", "{\n\"fileCryptDomains\": [\"fc.test\", \"terabytez.test\"]}", Reason::clash, 2,
     "fileCryptDomains", "terabytez."},
    {"FilestoreNamedTerabytez", "{\n\"filestoreDomain\": \"terabytez.test\"}", Reason::clash, 2, "filestoreDomain",
     "terabytez."},
    {"FilestoreInTerabytez", "{\"terabytezDomain\": \"my-boxes.test\",\n\"filestoreDomain\": \"boxes.test\"}",
     Reason::clash, 2, "filestoreDomain", "my-boxes.test"},
    {"FilestoreInAnotherHost", "{\n\"filestoreDomain\": \"gator.net\"}", Reason::clash, 2, "filestoreDomain",
     "rapidgator.net"},
    {"OtherHostTwice",
     R"({"otherFileHostDomains": ["a.test", "b.test", "c.test", "d.test", "e.test", "f.test", "g.test",
        "h.test", "i.test",
        "a.test"]})",
     Reason::repeatedValue, 3, "otherFileHostDomains", "a.test"},
    {"OneKeyForBothHosts", "{\"filestoreKey\": \"x.terabytez.test\",\n\"terabytezHostKey\": \"x.terabytez.test\"}",
     Reason::repeatedValue, 2, "terabytezHostKey", "x.terabytez.test"},
    {"KeyOfFilestoreIsTerabytez", "{\n\"filestoreKey\": \"files.terabytez.example\"}", Reason::repeatedValue, 2,
     "filestoreKey", "files.terabytez.example"},
    {"OneNameForBothHosts", "{\"terabytezDisplayName\": \"Boxes\",\n\"filestoreDisplayName\": \"Boxes\"}",
     Reason::repeatedValue, 2, "filestoreDisplayName", "Boxes"},
    {"RootElsewhere", "{\n\"keeplinksRootUrl\": \"https://other.test/\"}", Reason::foreignRoot, 2, "keeplinksRootUrl"},
    {"RootOfAHostThatEndsAlike", "{\n\"keeplinksRootUrl\": \"https://mykeeplinks.example/\"}", Reason::foreignRoot, 2,
     "keeplinksRootUrl"},
    {"MovedWithoutItsRoot", "{\n\"keeplinksDomains\": [\"kl1.test\", \"kl2.test\"]}", Reason::foreignRoot, 2,
     "keeplinksDomains"},
};

INSTANTIATE_TEST_SUITE_P(Neighbours, BadServicesFile, ::testing::ValuesIn(badNeighbours), nameOf);

/// A value that cannot stand behind a key, on the third line.
struct BadValue
{
    const char* name;
    const char* key;
    QString value;
    Reason reason;
};

class BadServicesValue : public ::testing::TestWithParam<BadValue>
{};

TEST_P(BadServicesValue, IsToldByLineAndKey)
{
    const BadValue& bad = GetParam();
    const ServicesReading reading =
        read(u"{\n\"%1\":\n\"%2\"}"_s.arg(QString::fromLatin1(bad.key), bad.value).toUtf8());
    EXPECT_EQ(reading.services, Services::builtIn());
    ASSERT_TRUE(reading.problem);
    EXPECT_EQ(static_cast<int>(reading.problem->reason), static_cast<int>(bad.reason));
    EXPECT_EQ(reading.problem->line, 3);
    EXPECT_EQ(reading.problem->key.toStdString(), bad.key);
}

const BadValue badValues[] = {
    {"EmptyDomain", "filestoreDomain", u""_s, Reason::noDomain},
    {"BareWord", "filestoreDomain", u"boxes"_s, Reason::noDomain},
    {"Scheme", "filestoreDomain", u"https://boxes.test"_s, Reason::noDomain},
    {"Port", "filestoreDomain", u"boxes.test:443"_s, Reason::noDomain},
    {"Path", "filestoreDomain", u"boxes.test/"_s, Reason::noDomain},
    {"User", "filestoreDomain", u"me@boxes.test"_s, Reason::noDomain},
    {"BlankWithin", "filestoreDomain", u"boxes .test"_s, Reason::noDomain},
    {"BlankBehind", "filestoreDomain", u"boxes.test "_s, Reason::noDomain},
    {"LineBehind", "filestoreDomain", u"boxes.test\\n"_s, Reason::noDomain},
    {"NulWithin", "filestoreDomain", u"boxes\\u0000.test"_s, Reason::noDomain},
    {"DotBefore", "filestoreDomain", u".boxes.test"_s, Reason::noDomain},
    {"DotBehind", "filestoreDomain", u"boxes.test."_s, Reason::noDomain},
    {"TwoDots", "filestoreDomain", u"boxes..test"_s, Reason::noDomain},
    {"Dot", "filestoreDomain", u"."_s, Reason::noDomain},
    {"HyphenBefore", "filestoreDomain", u"-boxes.test"_s, Reason::noDomain},
    {"HyphenBehind", "filestoreDomain", u"boxes.test-"_s, Reason::noDomain},
    {"Umlaut", "filestoreDomain", u"böxes.test"_s, Reason::noDomain},
    {"LongLabel", "filestoreDomain", QString(64, u'a') + u".test"_s, Reason::noDomain},
    {"LongDomain", "filestoreDomain", u"abcdefg."_s.repeated(32) + u"test"_s, Reason::noDomain},
    {"Capitals", "filestoreDomain", u"Boxes.test"_s, Reason::capitals},
    {"CapitalThatIsNoLetterOfADomain", "filestoreDomain", u"\u212Aeys.test"_s, Reason::capitals},
    {"Ipv4", "filestoreDomain", u"192.0.2.1"_s, Reason::ipAddress},
    {"ShortIpv4", "filestoreDomain", u"127.1"_s, Reason::ipAddress},
    {"HexIpv4", "filestoreDomain", u"127.0x1"_s, Reason::ipAddress},
    {"Ipv6", "filestoreDomain", u"[2001:db8::1]"_s, Reason::noDomain},
    {"Localhost", "filestoreDomain", u"localhost"_s, Reason::localDomain},
    {"BelowLocalhost", "filestoreDomain", u"boxes.localhost"_s, Reason::localDomain},
    {"Local", "filestoreDomain", u"boxes.local"_s, Reason::localDomain},
    {"Localdomain", "filestoreDomain", u"localhost.localdomain"_s, Reason::localDomain},
    {"KeyOfFilestore", "filestoreKey", u"boxes"_s, Reason::noDomain},
    {"DomainOfTerabytez", "terabytezDomain", u"boxes"_s, Reason::noDomain},
    {"KeyOfTerabytez", "terabytezHostKey", u"terabytez."_s, Reason::noDomain},
    {"EmptyName", "filestoreDisplayName", u""_s, Reason::noName},
    {"BlankName", "terabytezDisplayName", u"  "_s, Reason::noName},
    {"NameOfTwoLines", "terabytezDisplayName", u"a\\nb"_s, Reason::noName},
    {"NameThatTurnsRound", "terabytezDisplayName", u"a\u202Eb"_s, Reason::noName},
    {"LongName", "filestoreDisplayName", QString(101, u'a'), Reason::noName},
    {"RootOverHttp", "keeplinksRootUrl", u"http://www.keeplinks.example/"_s, Reason::noRootUrl},
    {"RootWithoutAScheme", "keeplinksRootUrl", u"www.keeplinks.example/"_s, Reason::noRootUrl},
    {"RootWithoutItsSlash", "keeplinksRootUrl", u"https://www.keeplinks.example"_s, Reason::noRootUrl},
    {"RootWithAPath", "keeplinksRootUrl", u"https://www.keeplinks.example/p/"_s, Reason::noRootUrl},
    {"RootWithAPort", "keeplinksRootUrl", u"https://www.keeplinks.example:8443/"_s, Reason::noRootUrl},
    {"RootWithAUser", "keeplinksRootUrl", u"https://me@keeplinks.example/"_s, Reason::noRootUrl},
    {"RootWithoutAHost", "keeplinksRootUrl", u"https:///"_s, Reason::noRootUrl},
    {"SchemeAlone", "keeplinksRootUrl", u"https://"_s, Reason::noRootUrl},
    {"EmptyRoot", "keeplinksRootUrl", u""_s, Reason::noRootUrl},
};

INSTANTIATE_TEST_SUITE_P(Values, BadServicesValue, ::testing::ValuesIn(badValues),
                         [](const auto& row) { return row.param.name; });

TEST(ServicesFile, AnyCutOfAGoodFileIsAProblemAndNoCrash)
{
    for (qsizetype size = 0; size < wholeFile.size(); ++size)
        EXPECT_TRUE(read(wholeFile.first(size)).problem) << size;
}

TEST(ServicesFile, TakesOneOfExactly64KiB)
{
    EXPECT_EQ(read("{}" + QByteArray(65534, '\n')).problem, std::nullopt);
}

TEST(ServicesFile, TheExampleOfTheReadmeIsTaken)
{
    QFile readme(QStringLiteral(VORMEL_README));
    ASSERT_TRUE(readme.open(QFile::ReadOnly));
    const QString example = QString::fromUtf8(readme.readAll()).section(u"```json\n"_s, 1, 1).section(u"```"_s, 0, 0);
    const ServicesReading reading = read(example.toUtf8());
    EXPECT_EQ(reading.problem, std::nullopt);
    EXPECT_EQ(reading.services.filestoreDomain, u"filestore.test");
}

TEST(ServicesFile, ThatIsNotThereIsNoProblem)
{
    const fixtures::Sandbox sandbox;
    const ServicesReading reading = readServicesFile(sandbox.path(u"services.json"_s), Services::builtIn());
    EXPECT_EQ(reading.problem, std::nullopt);
    EXPECT_EQ(reading.services, Services::builtIn());
}

TEST(ServicesFile, IsReadFromTheDisk)
{
    const fixtures::Sandbox sandbox;
    const QString path = sandbox.write(u"services.json"_s, R"({"filestoreDomain": "boxes.test"})");
    const ServicesReading reading = readServicesFile(path, Services::builtIn());
    EXPECT_EQ(reading.problem, std::nullopt);
    EXPECT_EQ(reading.services.filestoreDomain, u"boxes.test");
}

TEST(ServicesFile, ThatIsNoFileOrTooLargeIsAProblem)
{
    const fixtures::Sandbox sandbox;
    const auto reasonFor = [&sandbox](const QString& name) {
        const ServicesReading reading = readServicesFile(sandbox.path(name), Services::builtIn());
        EXPECT_EQ(reading.services, Services::builtIn());
        return reading.problem ? std::optional(static_cast<int>(reading.problem->reason)) : std::nullopt;
    };
    sandbox.write(u"folder/x"_s, "");
    sandbox.write(u"large"_s, "{}" + QByteArray(65535, '\n'));
    ASSERT_TRUE(QFile::link(sandbox.path(u"nowhere"_s), sandbox.path(u"dangling"_s)));
    EXPECT_EQ(reasonFor(u"folder"_s), static_cast<int>(Reason::unreadable));
    EXPECT_EQ(reasonFor(u"large"_s), static_cast<int>(Reason::tooLarge));
    EXPECT_EQ(reasonFor(u"dangling"_s), static_cast<int>(Reason::unreadable));
}

TEST(ServicesProblem, NamesThePlaceAndTheReasonInBothLanguages)
{
    const ServicesProblem problem{Reason::clash, 5, u"keeplinksDomains"_s, u"k.test"_s};
    EXPECT_EQ(problem.text(AppLanguage::english),
              u"services.json, line 5, keeplinksDomains: Its links could not be told "
              u"from those of “k.test”.");
    EXPECT_EQ(problem.text(AppLanguage::italian), u"services.json, riga 5, keeplinksDomains: I suoi link non si "
                                                  u"distinguerebbero da quelli di «k.test».");
    EXPECT_EQ((ServicesProblem{Reason::tooLarge, 0, {}, {}}).text(AppLanguage::english),
              u"services.json: The file is larger than 64 KiB.");
}

TEST(ServicesProblem, CutsAKeyToWhatCanBeRead)
{
    const ServicesProblem problem{Reason::unknownKey, 1, u"a\n\nb"_s + QString(60000, u'k'), {}};
    EXPECT_LT(problem.text(AppLanguage::english).size(), 100);
    EXPECT_FALSE(problem.text(AppLanguage::english).contains(u'\n'));
}

TEST(ServicesProblem, EachReasonHasAPairOfTextsOfItsOwn)
{
    QSet<QString> texts;
    const int last = static_cast<int>(Reason::clash);
    for (int reason = 0; reason <= last; ++reason) {
        for (const AppLanguage language : allLanguages)
            texts << ServicesProblem{static_cast<Reason>(reason), 1, {}, u"x"_s}.text(language);
    }
    EXPECT_EQ(texts.size(), 2 * (last + 1));
}

} // namespace
} // namespace vormel

#include "model/HostProfiles.h"

#include "fixtures/EngineOnScript.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

using fixtures::link;

/// Both services have moved, and not even their names are in their domains any more.
HostProfiles afterAMove()
{
    Services services = Services::builtIn();
    services.filestoreDomain = u"boxes.test"_s;
    services.terabytezDomain = u"terra.test"_s;
    return HostProfiles(services);
}

TEST(HostProfiles, EachHostHasOneRowAndAKeyAndALabelOfItsOwn)
{
    const HostProfiles profiles;
    const std::span<const HostProfile> all = profiles.inRankOrder();
    ASSERT_EQ(all.size(), 2U);
    for (const HostProfile& profile : all) {
        EXPECT_EQ(&profiles.of(profile.host), &profile);
        const auto alike = std::count_if(all.begin(), all.end(), [&profile](const HostProfile& other) {
            return other.key == profile.key || other.label == profile.label || other.rank == profile.rank;
        });
        EXPECT_EQ(alike, 1) << profile.label.toStdString();
    }
}

TEST(HostProfiles, TheRowsStandInTheOrderOfTheirRank)
{
    const HostProfiles profiles;
    EXPECT_TRUE(std::is_sorted(profiles.inRankOrder().begin(), profiles.inRankOrder().end(),
                               [](const HostProfile& a, const HostProfile& b) { return a.rank < b.rank; }));
}

TEST(HostProfiles, AHostIsStoredUnderOneNameAndShownUnderAnother)
{
    const HostProfiles profiles;
    EXPECT_EQ(profiles.rawValue(SupportedHost::filestore), u"filestore.example");
    EXPECT_EQ(profiles.displayName(SupportedHost::filestore), u"Filestore.example");
    EXPECT_EQ(profiles.rawValue(SupportedHost::terabytez), u"files.terabytez.example");
    EXPECT_EQ(profiles.displayName(SupportedHost::terabytez), u"Terabytez");
}

TEST(HostProfiles, OnlyTheExactStoredNameGivesAHost)
{
    const HostProfiles profiles;
    EXPECT_EQ(profiles.hostOfKey(u"filestore.example"), SupportedHost::filestore);
    EXPECT_EQ(profiles.hostOfKey(u"files.terabytez.example"), SupportedHost::terabytez);
    for (const QStringView value : {u"", u"Filestore.example", u"terabytez.example", u"Terabytez", u"other"})
        EXPECT_EQ(profiles.hostOfKey(value), std::nullopt) << value.toString().toStdString();
}

TEST(HostProfiles, NamesOfTerabytezAreNotLookedUp)
{
    const auto mayLookUp = [](const char* url) { return HostProfiles().mayLookUpNames(link(QString::fromUtf8(url))); };
    EXPECT_TRUE(mayLookUp("http://filestore.example/x"));
    EXPECT_TRUE(mayLookUp("http://h/terabytez.example"));
    EXPECT_FALSE(mayLookUp("http://www.TeraBytez.other/x"));
    EXPECT_FALSE(mayLookUp("http://terabytez.filestore.example/x"));
    EXPECT_FALSE(afterAMove().mayLookUpNames(link(u"http://terra.test/x"_s)));
}

TEST(HostProfiles, ALinkOfTheDomainThatAServiceMovedToIsItsLink)
{
    const HostProfiles profiles = afterAMove();
    const auto isOf = [&profiles](SupportedHost host, const char* url) {
        return isLinkOf(profiles.of(host), link(QString::fromUtf8(url)));
    };
    EXPECT_TRUE(isOf(SupportedHost::filestore, "http://WWW.Boxes.test/x"));
    EXPECT_FALSE(isOf(SupportedHost::filestore, "http://filestore.example/x"));
    EXPECT_TRUE(isOf(SupportedHost::terabytez, "http://dl.Terra.test/x"));
    EXPECT_TRUE(isOf(SupportedHost::terabytez, "http://terabytez.other/x"));
    EXPECT_FALSE(isOf(SupportedHost::terabytez, "http://boxes.test/x"));
}

TEST(HostProfiles, TheBuiltInKeyClaimsLinksOfTerabytez)
{
    const HostProfiles profiles;
    const QString key = profiles.rawValue(SupportedHost::terabytez);
    EXPECT_TRUE(isLinkOf(profiles.of(SupportedHost::terabytez), link(u"http://%1/x"_s.arg(key))));
}

TEST(HostProfiles, TheKeyOfFilestoreStaysWhenTheServiceMoves)
{
    EXPECT_EQ(afterAMove().rawValue(SupportedHost::filestore), HostProfiles().rawValue(SupportedHost::filestore));
    EXPECT_EQ(afterAMove().hostOfKey(u"filestore.example"), SupportedHost::filestore);
    EXPECT_EQ(afterAMove().hostOfKey(u"boxes.test"), std::nullopt);
}

TEST(HostProfiles, CertificatesOfTheServicesAndTheirMirrorsAreTaken)
{
    EXPECT_TRUE(HostProfiles().isTlsTrustedHost(u"dl.filestore.example"_s));
    EXPECT_TRUE(HostProfiles().isTlsTrustedHost(u"terabytez.mirror"_s));
    EXPECT_FALSE(HostProfiles().isTlsTrustedHost(u"filestore.other"_s));
    EXPECT_TRUE(afterAMove().isTlsTrustedHost(u"boxes.test"_s));
    EXPECT_TRUE(afterAMove().isTlsTrustedHost(u"terra.mirror"_s));
    EXPECT_FALSE(afterAMove().isTlsTrustedHost(u"filestore.example"_s));
}

TEST(HostProfiles, WhatStandsBeforeTheNameOfAServiceMakesNoCertificateGood)
{
    Services services = Services::builtIn();
    services.terabytezDomain = u"www.terabytez.example"_s;
    const HostProfiles profiles(services);
    EXPECT_TRUE(profiles.isTlsTrustedHost(u"www.terabytez.example"_s));
    EXPECT_FALSE(profiles.isTlsTrustedHost(u"www.bank.example"_s));
}

} // namespace
} // namespace vormel

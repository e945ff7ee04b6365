#include "app/Program.h"

#include "fixtures/Sandbox.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vormel {
namespace {

class ProgramServicesTest : public ::testing::Test
{
protected:
    /// What the program, started over this file of services, makes of the link.
    [[nodiscard]] bool isLinkOfFilestore(const QByteArray& services, QStringView url)
    {
        sandbox.write(file, services);
        Program program(sandbox.folders());
        problem = program.servicesProblem();
        return isLinkOf(program.manager().resolvers().profiles().of(SupportedHost::filestore),
                        Link::parse(url).value());
    }

    const QString file = u"config/Vormel/services.json"_s;
    fixtures::Sandbox sandbox;
    std::optional<ServicesProblem> problem;
};

TEST_F(ProgramServicesTest, WithoutAFileTheBuiltInOnesHold)
{
    Program program(sandbox.folders());
    EXPECT_EQ(program.servicesProblem(), std::nullopt);
    EXPECT_TRUE(isLinkOf(program.manager().resolvers().profiles().of(SupportedHost::filestore),
                         Link::parse(u"https://filestore.example/x").value()));
}

TEST_F(ProgramServicesTest, ALinkOfTheDomainThatTheFileTellsIsClaimed)
{
    const QByteArray moved = R"({"filestoreDomain": "boxes.test"})";
    EXPECT_TRUE(isLinkOfFilestore(moved, u"https://boxes.test/x"));
    EXPECT_FALSE(isLinkOfFilestore(moved, u"https://filestore.example/x"));
    EXPECT_EQ(problem, std::nullopt);
}

TEST_F(ProgramServicesTest, ABadFileIsKeptInMindAndTheBuiltInOnesHold)
{
    EXPECT_TRUE(isLinkOfFilestore("{\n\"filestoreDomain\": \"boxes\"}", u"https://filestore.example/x"));
    EXPECT_EQ(problem, (ServicesProblem{ServicesProblem::Reason::noDomain, 2, u"filestoreDomain"_s, {}}));
    EXPECT_TRUE(sandbox.exists(file));
}

} // namespace
} // namespace vormel

#pragma once

#include "fixtures/Sandbox.h"
#include "platform/http/CurlHttpClient.h"
#include "sites/services/ContainerSite.h"
#include "sites/services/FilestoreSite.h"
#include "text/Link.h"

namespace vormel::fixtures {

/// A premium host with an account, a container service, and a server of somebody else, all over https.
class PremiumServices
{
public:
    static constexpr qint64 fileSize = 300'000;

    PremiumServices();

    /// For the program: leads the names of the services to them, and no other name anywhere.
    [[nodiscard]] CurlHttpClient::Options network() const;

    /// A link to a new file of the host: film.part1.rar, film.part2.rar and so on.
    [[nodiscard]] Link newFile(sites::FilestoreSite::Shape shape = sites::FilestoreSite::Shape::oneForm);
    /// That of the number.
    [[nodiscard]] static sites::PatternContent contentOf(int number);
    /// A container of so many new files, behind containerPassword.
    [[nodiscard]] Link newContainer(int files);

    // The same in every encoding of a form, an address or a header.
    const QString username = QStringLiteral("ann");
    const QString password = QStringLiteral("canaryOfTheAccount");
    const QString containerPassword = QStringLiteral("canaryOfTheContainer");
    sites::TestCertificates certificates;
    sites::FilestoreSite site{certificates};
    sites::ContainerSite containers{certificates, "filecrypt.example"};
    sites::FileServer stranger{{.tls = certificates.valid({"cdn.example"})}};

private:
    Sandbox m_authority;
    int m_files = 0;
};

} // namespace vormel::fixtures

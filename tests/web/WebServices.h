#pragma once

#include "fixtures/Sandbox.h"
#include "platform/http/CurlHttpClient.h"
#include "sites/Switchboard.h"
#include "sites/services/ContainerSite.h"
#include "sites/services/FilestoreSite.h"
#include "sites/services/TerabytezSite.h"
#include "text/Link.h"

namespace vormel::fixtures {

/// The services as the program and its engine reach them: by their names, over https. One at a time in a process.
class WebServices
{
public:
    static constexpr qint64 fileSize = 300'000;
    static constexpr const char* username = "ann";
    static constexpr const char* password = "it's a \\ secret";

    WebServices();
    WebServices(const WebServices&) = delete;
    WebServices& operator=(const WebServices&) = delete;
    ~WebServices();

    /// For the program: leads the names of the services to them, and no other name anywhere.
    [[nodiscard]] CurlHttpClient::Options network() const;

    /// A link to the page of a new file at Terabytez: film1.rar, film2.rar and so on.
    [[nodiscard]] Link newFile(sites::TerabytezSite::Shape shape = sites::TerabytezSite::Shape::redirect,
                               qint64 size = fileSize);
    /// A link to a new file of a server that wants nothing of anybody.
    [[nodiscard]] Link newDirectFile(qint64 size);
    [[nodiscard]] static sites::PatternContent contentOf(int number, qint64 size = fileSize);

    sites::TerabytezSite terabytez;
    sites::FilestoreSite filestore;
    sites::ContainerSite containers;
    sites::FileServer stranger;

private:
    [[nodiscard]] sites::Switchboard::Places places() const;

    Sandbox m_authority;
    int m_files = 0;
};

} // namespace vormel::fixtures

#include "sites/NginxConfiguration.h"

#include "sites/TestCertificates.h"
#include "sites/TextFile.h"

#include <unistd.h>

#include <sstream>
#include <stdexcept>
#include <string>

namespace vormel::sites {

namespace {

std::string quoted(const std::filesystem::path& path)
{
    const auto text = std::filesystem::absolute(path).string();
    if (text.find_first_of("\"\\$\r\n") != std::string::npos)
        throw std::invalid_argument("nginx cannot be told the path " + text);
    return '"' + text + '"';
}

std::string tlsLines(const NginxServer::Options& options)
{
    if (!options.tls)
        return {};
    writeIdentity(*options.tls, options.folder);
    return "ssl_certificate " + quoted(options.folder / "certificate.pem") + ";\nssl_certificate_key " +
           quoted(options.folder / "key.pem") + ";\n";
}

std::string temporaryPaths(const std::filesystem::path& folder)
{
    std::string lines;
    for (const auto* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        lines += std::string(kind) + "_temp_path " + quoted(folder / kind) + ";\n";
    return lines;
}

} // namespace

std::filesystem::path nginxPidFile(const std::filesystem::path& folder)
{
    return folder / "nginx.pid";
}

std::filesystem::path nginxErrorLog(const std::filesystem::path& folder)
{
    return folder / "error.log";
}

std::filesystem::path writeNginxConfiguration(const NginxServer::Options& options, std::uint16_t port)
{
    std::ostringstream text;
    // Started by root it would have a worker of another user, who may not see the document root.
    if (geteuid() == 0)
        text << "user root root;\n";
    text << "daemon off;\nworker_processes 1;\n"
         << "pid " << quoted(nginxPidFile(options.folder)) << ";\n"
         << "error_log " << quoted(nginxErrorLog(options.folder)) << " warn;\n"
         << "events {\nworker_connections 1024;\n}\n"
         << "http {\naccess_log off;\nsendfile on;\ntcp_nopush on;\ndefault_type application/octet-stream;\n"
         << temporaryPaths(options.folder) << "server {\nlisten 127.0.0.1:" << port << (options.tls ? " ssl" : "")
         << ";\nroot " << quoted(options.documentRoot) << ";\n"
         << tlsLines(options) << "}\n}\n";
    const auto path = options.folder / "nginx.conf";
    writeTextFile(path, text.str());
    return path;
}

} // namespace vormel::sites

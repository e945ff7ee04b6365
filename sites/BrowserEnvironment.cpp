#include "sites/BrowserEnvironment.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <spawn.h>
#include <stdexcept>
#include <vector>

namespace vormel::sites {

namespace {

void certutil(std::vector<std::string> arguments)
{
    std::string name = "certutil";
    std::vector<char*> pointers{name.data()};
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t process = 0;
    if (posix_spawnp(&process, "certutil", nullptr, nullptr, pointers.data(), environ) != 0)
        throw std::runtime_error("certutil, of the package libnss3-tools, is not there");
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR)
        continue;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("certutil does not take the authority's certificate");
}

} // namespace

void trustAuthority(const std::filesystem::path& home, const TestCertificates& certificates)
{
    const std::filesystem::path trusted = home / ".pki" / "nssdb";
    std::filesystem::create_directories(trusted);
    const std::string database = "sql:" + trusted.string();
    certutil({"-d", database, "-N", "--empty-password"});
    certutil(
        {"-d", database, "-A", "-t", "C,,", "-n", "authority", "-i", certificates.writeAuthority(trusted).string()});
}

std::map<std::string, std::string> browserEnvironment(const std::filesystem::path& folder,
                                                      const TestCertificates& certificates,
                                                      const Switchboard& switchboard)
{
    const std::filesystem::path home = folder / "home";
    const std::filesystem::path trusted = home / ".pki" / "nssdb";
    std::filesystem::create_directories(trusted);
    const std::string database = "sql:" + trusted.string();
    certutil({"-d", database, "-N", "--empty-password"});
    certutil(
        {"-d", database, "-A", "-t", "C,,", "-n", "authority", "-i", certificates.writeAuthority(folder).string()});

    std::map<std::string, std::string> variables{
        {"HOME", home.string()},
        {"QTWEBENGINE_CHROMIUM_FLAGS", "--host-resolver-rules=\"" + switchboard.resolverRules() + '"'}};
    if (geteuid() == 0)
        variables["QTWEBENGINE_DISABLE_SANDBOX"] = "1";
    return variables;
}

void setEnvironment(const std::map<std::string, std::string>& variables)
{
    for (const auto& [name, value] : variables)
        setenv(name.c_str(), value.c_str(), 1);
}

} // namespace vormel::sites

#pragma once

#include "sites/Switchboard.h"
#include "sites/TestCertificates.h"

#include <filesystem>
#include <map>
#include <string>

namespace vormel::sites {

// Has the embedded engine of a program with this home take certificates of the authority. Before the engine starts.
// Throws std::runtime_error where certutil is missing or fails.
void trustAuthority(const std::filesystem::path& home, const TestCertificates& certificates);

// What has to stand in the environment of a program before its embedded browser engine starts, so that every name leads
// to the switchboard and certificates of the authority count: variables and their values. They lead to a folder made
// below this one, which becomes the home of the program and has to be there as long as it runs. For the superuser, the
// engine's sandbox cannot work and is switched off. Throws as trustAuthority().
[[nodiscard]] std::map<std::string, std::string> browserEnvironment(const std::filesystem::path& folder,
                                                                    const TestCertificates& certificates,
                                                                    const Switchboard& switchboard);

// Gives this process these variables. Before there are other threads.
void setEnvironment(const std::map<std::string, std::string>& variables);

} // namespace vormel::sites

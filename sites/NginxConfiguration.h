#pragma once

#include "sites/NginxServer.h"

#include <cstdint>
#include <filesystem>

namespace vormel::sites {

// Writes nginx' configuration for these options, and the certificate with its key, into the options' folder and
// returns the path of the configuration. Throws std::invalid_argument for paths it cannot name, std::runtime_error if
// writing fails.
std::filesystem::path writeNginxConfiguration(const NginxServer::Options& options, std::uint16_t port);

// Where that configuration has nginx leave its process id and its errors.
[[nodiscard]] std::filesystem::path nginxPidFile(const std::filesystem::path& folder);
[[nodiscard]] std::filesystem::path nginxErrorLog(const std::filesystem::path& folder);

} // namespace vormel::sites

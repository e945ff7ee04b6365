#pragma once

#include "model/Services.h"
#include "model/ServicesProblem.h"

#include <QByteArray>

#include <optional>

namespace vormel {

/// The services that hold, and why they are not what a file says.
struct ServicesReading
{
    Services services;
    std::optional<ServicesProblem> problem;
};

/// The built-in services with what the file puts in their place: an object of at most 64 KiB, whose keys are the
/// members of Services. With a single thing wrong nothing of it is taken.
[[nodiscard]] ServicesReading readServices(const QByteArray& bytes, const Services& builtIn);

/// The same from the disk. Without such a file the built-in services hold.
[[nodiscard]] ServicesReading readServicesFile(const QString& path, const Services& builtIn);

} // namespace vormel

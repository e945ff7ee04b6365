#pragma once

namespace vormel {

/// Lets this process and its children have as many files and connections open as the system allows, up to 65,536. The
/// usual 1,024 are fewer than one container can have links to follow at the same time.
void raiseOpenFileLimit();

} // namespace vormel

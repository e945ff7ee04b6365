#pragma once

namespace vormel {

/// Sees to it that the programs started by this one write names as UTF-8, whatever the session is set to. Called once,
/// by main(), before the application object is made and before any thread is started.
void ensureUtf8Locale();

} // namespace vormel

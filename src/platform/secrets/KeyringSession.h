#pragma once

#include <gio/gio.h>

namespace vormel {

/// A SecretService that keeps to the connection that it is made with ("g-connection"). libsecret's own type insists on
/// the one session bus that GLib finds by itself, whose end would be the end of the program. And its prompts end with
/// their keyring, which libsecret would not notice, and with nothing else but an answer: a call that is cancelled
/// leaves its prompt to the user.
[[nodiscard]] GType keyringSessionType();

} // namespace vormel

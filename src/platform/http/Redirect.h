#pragma once

#include "platform/http/HttpMessage.h"

namespace vormel {

/// Where the answer sends us, resolved against its own address; nothing for an answer that is no redirect. The target
/// may be of any scheme.
[[nodiscard]] std::optional<QUrl> redirectTarget(const HttpResponse& response);

/// The request for the next hop: a POST becomes a GET where the status says so or another host would get its body, and
/// headers that were meant for the first host go to no other.
[[nodiscard]] HttpRequest requestForHop(HttpRequest request, const HttpResponse& redirect, const QUrl& target);

} // namespace vormel

#pragma once

#include "resolvers/terabytez/TerabytezSite.h"

#include <QByteArray>

namespace vormel {

class CookieStore;
class WebBrowser;

/// Hands the cookies that the service has in the browser on to the transfers. UI thread only.
void syncTerabytezCookies(const WebBrowser& browser, CookieStore& transfers, const TerabytezSite& site);

} // namespace vormel

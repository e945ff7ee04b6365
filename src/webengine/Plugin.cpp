#include "webengine/Plugin.h"

#include "webengine/EngineBrowser.h"

namespace vormel {

std::unique_ptr<WebBrowser> Plugin::makeBrowser(const QString& folder, Clock& clock)
{
    return std::make_unique<EngineBrowser>(folder, clock);
}

} // namespace vormel

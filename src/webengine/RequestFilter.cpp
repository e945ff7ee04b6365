#include "webengine/RequestFilter.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace vormel {

namespace {

bool isOfPage(QWebEngineUrlRequestInfo::ResourceType type)
{
    return type != QWebEngineUrlRequestInfo::ResourceTypeMainFrame &&
           type != QWebEngineUrlRequestInfo::ResourceTypeSubFrame;
}

bool isAllowed(const QWebEngineUrlRequestInfo& request)
{
    if (request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeServiceWorker)
        return false;
    const QString scheme = request.requestUrl().scheme();
    // The last two hold what the page has already, such as a picture that it made.
    return scheme == u"http" || scheme == u"https" ||
           (isOfPage(request.resourceType()) && (scheme == u"data" || scheme == u"blob"));
}

} // namespace

void RequestFilter::interceptRequest(QWebEngineUrlRequestInfo& request)
{
    if (!isAllowed(request))
        request.block(true);
}

} // namespace vormel

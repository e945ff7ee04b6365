#pragma once

#include <QWebEngineUrlRequestInterceptor>

namespace vormel {

/// Lets nothing out but http and https. Service workers never come to be: they would live on after their page.
class RequestFilter final : public QWebEngineUrlRequestInterceptor
{
public:
    void interceptRequest(QWebEngineUrlRequestInfo& request) override;
};

} // namespace vormel
